#pragma once

#include "NewestRendering.h"
#include "ScreenRenderer.h"
#include "TextScreen.h"

#include <QImage>
#include <QMutex>
#include <QRegion>
#include <QThread>
#include <QWaitCondition>

#include <atomic>
#include <optional>

/// Draws the character screen of one instrument into images, on a thread of its own, so that a
/// window full of screens can be resized without waiting for any of them.
///
/// The screen widget owns one and asks for images; each finished one comes back by
/// renderedImage(), which needs the event loop of the owner's thread. A newer request cuts the
/// rendering in progress short, which then delivers nothing. The public operations belong to the
/// owner's thread and may be called at any time: one mutex guards all that the two threads share,
/// and images are painted from copies taken under it. The destructor ends the thread and waits for
/// it.
class text_renderthread : public QThread {
    Q_OBJECT

public:
    static constexpr int defaultColumns = 40;
    static constexpr int defaultRows = 8;

    explicit text_renderthread(QObject* parent = nullptr);
    text_renderthread(int columns, int rows, QObject* parent = nullptr);
    ~text_renderthread() override;

    /// Asks for an image of `size` pixels of a screen of these character codes and attributes; see
    /// TextScreen. Starts the thread when need be. An empty size yields no image, and one beyond
    /// what maxSide and maxPixels allow a smaller image of about that shape. `force` changes
    /// nothing.
    void updateTextAndAttr(const QSize& size, const QVector<char>& text, const QVector<char>& attr,
                           bool force);

    /// The font from now on; the size of the letters is chosen here, from the size of the image.
    void setFont(const QFont& font);

    /// The colours from now on; see ColorTables for what becomes of the three.
    void setColors(QColor text, QColor background, QColor highlight);

    /// The number of cells from now on, at least 1 x 1.
    void setGrid(int columns, int rows);

    /// Draws the cells that the thread took up last, in the font and colours of now, onto
    /// `painter` from (0, 0) to `size`, and returns when done. An empty size draws nothing.
    void drawNow(QPainter& painter, const QSize& size);

    /// Where the image that renderedImage() brought last differs from the one before it, when
    /// `before` and `after` are the QImage::cacheKey() of these two; nothing otherwise. For the
    /// owner's thread.
    std::optional<QRegion> difference(qint64 before, qint64 after) const;

    /// Limits of an image: what a painter can address, and somewhat more than the largest of
    /// today's displays.
    static constexpr int maxSide = 16384;
    static constexpr int maxPixels = 1 << 25;

signals:
    /// A finished rendering: the newest, in the owner's thread.
    void renderedImage(QImage image);

protected:
    void run() override;

private:
    struct Request {
        TextScreen screen;
        QSize size;
    };

    void renderAgain();
    std::optional<Request> nextRequest();
    ScreenRenderer::Rendering render(ScreenRenderer& renderer, Request& request);
    void deliver(const ScreenRenderer::Rendering& rendering);
    void emitFinished();

    QMutex m_mutex;
    QWaitCondition m_condition;
    QVector<char> m_requestedText;
    QVector<char> m_requestedAttr;
    QSize m_requestedSize{-1, -1};
    /// Read while painting, without the mutex.
    std::atomic<bool> m_restart = false;
    bool m_abort = false;
    TextScreen m_screen;
    NewestRendering m_finished;

    // Of the owner's thread alone.
    qint64 m_keyBefore = 0;
    qint64 m_keyNow = 0;
    QRegion m_changedNow;
};
