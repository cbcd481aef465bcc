// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/media/view/VideoSource.h"

#include <QImage>
#include <QWidget>

namespace orvane {

/// Draws video without OpenGL: mpv scales each frame into an image, which is painted like any
/// other. Part of a `VideoView`; main thread.
class SoftwareVideoView final : public QWidget, public VideoCanvas {
    Q_OBJECT

public:
    explicit SoftwareVideoView(QWidget* parent = nullptr);
    ~SoftwareVideoView() override;

    void setSource(VideoSource* source) override;
    void detach() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void drawFrame();
    void fillPadding();
    /// Whether frames lie on their side in the image.
    [[nodiscard]] bool isOnItsSide() const { return m_rotation % 180 != 0; }

    VideoSource* m_source = nullptr;
    QImage m_image;
    /// By how many degrees clockwise the image is turned when it is painted.
    int m_rotation = 0;
};

} // namespace orvane
