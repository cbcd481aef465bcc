// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/media/MediaPlayer.h"
#include "platform/media/VideoOutput.h"

#include <QWidget>

namespace orvane {

/// What a machine can draw video with: `automatic` becomes `openGL` where there is a GPU with a
/// driver, and `software` elsewhere, because the library's own software renderer takes less than
/// half of what OpenGL on the processor does. Any other wish is granted. Needs the application
/// object; may load the graphics driver.
[[nodiscard]] VideoOutput chooseVideoOutput(VideoOutput wish);

/// Shows the picture of a player, in its own shape, with black around it. A widget like any other:
/// translucent widgets may lie above it. Main thread. A player whose renderer cannot be set up
/// plays without a picture.
class VideoView final : public QWidget, public VideoSurface {
    Q_OBJECT

public:
    /// `output` is not `automatic`.
    explicit VideoView(VideoOutput output, QWidget* parent = nullptr);

    void setPlayer(MediaPlayer* player) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* m_canvas;
    VideoSurface* m_surface;
};

} // namespace orvane
