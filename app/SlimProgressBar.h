#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QProgressBar>

/// A progress bar of a few pixels' height. Where the end is not known (a maximum of 0), a piece
/// moves to and fro: the busy bar of a style, at this height, looks like one that is done.
class SlimProgressBar : public QProgressBar {
    Q_OBJECT

public:
    explicit SlimProgressBar(QWidget* parent = nullptr);

    /// Where the moving piece begins, in thousandths of the way that it has, after so many
    /// milliseconds.
    static int busyPosition(qint64 milliseconds);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    QRect filled(const QRect& room) const;

    QElapsedTimer m_clock;
    QBasicTimer m_frames;
};
