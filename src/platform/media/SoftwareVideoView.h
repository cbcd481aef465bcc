// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/media/MediaPlayer.h"

#include <QImage>
#include <QPointer>
#include <QWidget>

namespace orvane {

class MpvMediaPlayer;

/// Draws video without OpenGL: the media library scales each picture into an image, which is
/// painted like any other. Part of a `VideoView`; main thread.
class SoftwareVideoView final : public QWidget, public VideoSurface {
    Q_OBJECT

public:
    explicit SoftwareVideoView(QWidget* parent = nullptr);
    ~SoftwareVideoView() override;

    void setPlayer(MediaPlayer* player) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void detach();
    void drawIfNew();
    void draw();

    QPointer<MpvMediaPlayer> m_player;
    QImage m_image;
};

} // namespace orvane
