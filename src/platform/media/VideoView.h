// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/media/MediaPlayer.h"
#include "platform/media/view/VideoOutput.h"

#include <QWidget>

namespace orvane {

class VideoCanvas;

/// Returns how this machine draws video. `automatic` becomes `openGL` where there is a GPU with a
/// driver, else `software`: mpv's software renderer needs less than half the CPU time of OpenGL on
/// the processor. `openGL` becomes `software` where OpenGL does not work. Needs the application
/// object; may load the graphics driver.
[[nodiscard]] VideoOutput chooseVideoOutput(VideoOutput wish);

/// Shows a player's video in its aspect ratio, with black around it. Translucent widgets may lie
/// above it. Main thread. A player whose renderer cannot be set up plays without video.
class VideoView final : public QWidget, public VideoSurface {
    Q_OBJECT

public:
    /// `output` is not `automatic`.
    explicit VideoView(VideoOutput output, QWidget* parent = nullptr);

    void setPlayer(MediaPlayer* player) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* m_widget;
    VideoCanvas* m_canvas;
    QMetaObject::Connection m_closing;
};

} // namespace orvane
