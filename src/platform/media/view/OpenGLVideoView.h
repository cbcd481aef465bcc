// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/media/view/VideoSource.h"

#include <QOpenGLWidget>

namespace orvane {

/// Draws video with mpv's OpenGL renderer. Part of a `VideoView`; main thread. A source that is set
/// before the widget's OpenGL context exists gets its renderer once it does.
class OpenGLVideoView final : public QOpenGLWidget, public VideoCanvas {
    Q_OBJECT

public:
    explicit OpenGLVideoView(QWidget* parent = nullptr);
    ~OpenGLVideoView() override;

    void setSource(VideoSource* source) override;
    void detach() override;

protected:
    void initializeGL() override;
    void paintGL() override;

private:
    void createRenderer();
    void scheduleDrawing();

    VideoSource* m_source = nullptr;
};

} // namespace orvane
