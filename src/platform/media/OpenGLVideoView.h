// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/media/MediaPlayer.h"

#include <QOpenGLWidget>
#include <QPointer>

namespace orvane {

class MpvMediaPlayer;

/// Draws video with the media library's OpenGL renderer. Part of a `VideoView`; main thread. A
/// player that arrives before the widget's OpenGL context exists is opened when it does.
class OpenGLVideoView final : public QOpenGLWidget, public VideoSurface {
    Q_OBJECT

public:
    explicit OpenGLVideoView(QWidget* parent = nullptr);
    ~OpenGLVideoView() override;

    void setPlayer(MediaPlayer* player) override;

protected:
    void initializeGL() override;
    void paintGL() override;

private:
    void createRenderer();
    void detach();
    void scheduleDrawing();

    QPointer<MpvMediaPlayer> m_player;
};

} // namespace orvane
