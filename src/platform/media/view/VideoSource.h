// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

struct mpv_render_param;

namespace orvane {

/// What a player offers to the view that draws its video. Belongs to the player, which emits
/// `MediaPlayer::closing` before the source is gone. Main thread.
class VideoSource {
public:
    /// Runs a function with the renderer's drawing context current. Empty for a renderer that has
    /// none and may be used on any thread.
    using ContextScope = std::function<void(const std::function<void()>&)>;

    virtual ~VideoSource() = default;

    /// Announces a renderer: the stream is not opened before `createRenderer`.
    virtual void expectRenderer() = 0;
    /// Creates the renderer and lets the stream be opened, without video if mpv refuses the
    /// parameters. `onUpdate` is called whenever there may be something new to draw.
    virtual void createRenderer(mpv_render_param* parameters, ContextScope contextScope,
                                std::function<void()> onUpdate) = 0;
    [[nodiscard]] virtual bool hasRenderer() const = 0;
    /// Ends the calls of `onUpdate`.
    virtual void stopUpdates() = 0;

    /// Returns whether the last update has brought a new frame, or has turned the current one. Call
    /// it once for each update.
    [[nodiscard]] virtual bool hasNewFrame() = 0;
    /// Returns by how many degrees clockwise the stream wants its frames to be turned: 0, 90, 180
    /// or 270. mpv's OpenGL renderer turns them, its software renderer does not.
    [[nodiscard]] virtual int rotation() const = 0;
    /// Tells how wide frames are drawn, in pixels: those that are enlarged can be scaled with less
    /// work. For a view that draws in memory.
    virtual void setDrawnWidth(int pixels) = 0;
    /// Draws the current frame, or black before the first. Returns false if nothing was drawn.
    virtual bool draw(mpv_render_param* parameters) = 0;
    /// Counts a new frame as shown. `draw` does so itself; a hidden view, which does not draw,
    /// calls this.
    virtual void frameShown() = 0;
};

/// A widget that draws the frames of one source. Main thread.
class VideoCanvas {
public:
    virtual ~VideoCanvas() = default;

    /// Null shows black.
    virtual void setSource(VideoSource* source) = 0;
    /// Stops using the source, which is about to be destroyed, but keeps showing its last frame.
    virtual void detach() = 0;
};

} // namespace orvane
