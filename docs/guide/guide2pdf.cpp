// Sets the user guide: Markdown in, PDF out, with a title page, a table of contents and numbered
// pages. The same source gives the same file, bit for bit.
//   guide2pdf guide.md guide.pdf date

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHashFunctions>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <cmath>
#include <cstdio>

namespace {

/// Points; a page of A4 with room for a hole punch.
constexpr QSizeF paper{595, 842};
constexpr qreal margin = 64;
const QSizeF area{paper.width() - 2 * margin, paper.height() - 2 * margin};

struct Heading {
    QString text;
    int level;
    int page;
};

int pageOf(const QTextDocument& document, const QTextBlock& block) {
    const QRectF where = document.documentLayout()->blockBoundingRect(block);
    return static_cast<int>(where.top() / area.height());
}

std::vector<Heading> headings(const QTextDocument& document) {
    std::vector<Heading> found;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        if (level == 1 || level == 2)
            found.push_back({block.text(), level, pageOf(document, block)});
    }
    return found;
}

/// Gives text air, and headings more.
void style(QTextDocument& document) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat format = block.blockFormat();
        const int level = format.headingLevel();
        format.setLineHeight(115, QTextBlockFormat::ProportionalHeight);
        format.setTopMargin(level == 0 ? format.topMargin() : 34 - 8 * level);
        format.setBottomMargin(6);
        QTextCursor(block).setBlockFormat(format);
    }
}

bool isPicture(const QTextBlock& block) {
    return !block.begin().atEnd() && block.begin().fragment().charFormat().isImageFormat();
}

/// The first block that has to go to the next page: a heading near the end of one, or a picture
/// with an edge beyond it.
QTextBlock misplacedBlock(const QTextDocument& document) {
    constexpr qreal last = 0.85;
    const qreal height = area.height();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextBlockFormat format = block.blockFormat();
        if (format.pageBreakPolicy() != QTextFormat::PageBreak_Auto)
            continue;
        const QRectF where = document.documentLayout()->blockBoundingRect(block);
        const bool lonely =
            format.headingLevel() != 0 && std::fmod(where.top(), height) > last * height;
        const bool divided = isPicture(block) && std::floor(where.top() / height) !=
                                                     std::floor((where.bottom() - 1) / height);
        if (lonely || divided)
            return block;
    }
    return {};
}

/// Divides the text into pages so that each heading has some of its text below it, and each picture
/// is whole.
void paginate(QTextDocument& document) {
    document.setPageSize(area);
    for (QTextBlock block = misplacedBlock(document); block.isValid();
         block = misplacedBlock(document)) {
        QTextBlockFormat format = block.blockFormat();
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        QTextCursor(block).setBlockFormat(format);
        // What follows moves as well; left to itself the layout moves only some of it.
        document.setPageSize({area.width(), -1});
        document.setPageSize(area);
    }
}

/// Pictures no wider than the text.
void fitPictures(QTextDocument& document, const QString& folder) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextFragment fragment = part.fragment();
            if (!fragment.charFormat().isImageFormat())
                continue;
            QTextImageFormat image = fragment.charFormat().toImageFormat();
            const QSizeF size = QImage(folder + u'/' + image.name()).size();
            // A dot of the screen is three quarters of a point, as on paper.
            const qreal scale = std::min(0.6, area.width() / std::max(size.width(), 1.0));
            image.setWidth(size.width() * scale);
            image.setHeight(size.height() * scale);
            QTextCursor cursor(&document);
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(image);
            break;
        }
    }
}

void drawTitle(QPainter& painter, const QString& title, const QString& date) {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(30);
    painter.setFont(font);
    painter.drawText(QRectF(0, 200, area.width(), 60), Qt::AlignLeft, title);
    font.setPointSizeF(16);
    painter.setFont(font);
    painter.drawText(QRectF(0, 260, area.width(), 40), Qt::AlignLeft, QStringLiteral("User Guide"));
    font.setPointSizeF(10);
    painter.setFont(font);
    painter.drawText(QRectF(0, area.height() - 20, area.width(), 20), Qt::AlignLeft, date);
}

void drawContents(QPainter& painter, const std::vector<Heading>& entries, int pagesBefore) {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(16);
    painter.setFont(font);
    painter.drawText(QRectF(0, 0, area.width(), 30), Qt::AlignLeft, QStringLiteral("Contents"));
    qreal y = 40;
    for (const Heading& entry : entries) {
        font.setPointSizeF(entry.level == 1 ? 10.5 : 9);
        font.setBold(entry.level == 1);
        painter.setFont(font);
        y += entry.level == 1 ? 4 : 0;
        const QRectF line(0, y, area.width(), 14);
        painter.drawText(line.adjusted((entry.level - 1) * 16, 0, 0, 0), Qt::AlignLeft, entry.text);
        painter.drawText(line, Qt::AlignRight, QString::number(entry.page + pagesBefore + 1));
        y += entry.level == 1 ? 15 : 12.5;
    }
}

void drawPageNumber(QPainter& painter, int number) {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(8);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(QRectF(0, area.height() + 20, area.width(), 14), Qt::AlignHCenter,
                     QString::number(number));
}

void draw(QTextDocument& document, QPdfWriter& writer, const QString& title, const QString& date) {
    constexpr int pagesBefore = 2;
    QPainter painter(&writer);
    // Pictures of windows are text and lines: as photographs they would be blurred.
    painter.setRenderHint(QPainter::LosslessImageRendering);
    painter.scale(writer.width() / paper.width(), writer.height() / paper.height());
    painter.translate(margin, margin);
    drawTitle(painter, title, date);
    writer.newPage();
    drawContents(painter, headings(document), pagesBefore);
    for (int page = 0; page < document.pageCount(); ++page) {
        writer.newPage();
        painter.save();
        painter.translate(0, -page * area.height());
        const QRectF view(0, page * area.height(), area.width(), area.height());
        painter.setClipRect(view);
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = view;
        context.palette.setColor(QPalette::Text, Qt::black);
        document.documentLayout()->draw(&painter, context);
        painter.restore();
        drawPageNumber(painter, page + pagesBefore + 1);
    }
}

/// Puts the given date in place of the present one. The length stays: places in the file are
/// counted in bytes.
QByteArray madeReproducible(QByteArray pdf, const QDateTime& date) {
    const QByteArray stamp = date.toUTC().toString(QStringLiteral("yyyyMMddhhmmss")).toLatin1();
    const QByteArray key = "/CreationDate (D:";
    const qsizetype start = pdf.indexOf(key);
    if (start >= 0)
        pdf.replace(start + key.size(), stamp.size(), stamp);
    return pdf;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The zone of the date is written into the file.
    qputenv("TZ", "UTC");
    // The order of fonts in the file comes out of a hash.
    QHashSeed::setDeterministicGlobalSeed();
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QFile source(arguments.value(1));
    QFile target(arguments.value(2));
    const QDateTime date = QDateTime::fromString(arguments.value(3), Qt::ISODate);
    if (!date.isValid() || !source.open(QIODevice::ReadOnly) ||
        !target.open(QIODevice::WriteOnly)) {
        std::fputs("usage: guide2pdf guide.md guide.pdf date\n", stderr);
        return 1;
    }

    const QString folder = QFileInfo(source).absolutePath();
    const QString title = QStringLiteral("GX7100Group");
    QTextDocument document;
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(9.5);
    document.setDefaultFont(font);
    document.setBaseUrl(QUrl::fromLocalFile(folder + u'/'));
    document.setMarkdown(QString::fromUtf8(source.readAll()));
    document.setDocumentMargin(0);
    style(document);
    fitPictures(document, folder);

    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setResolution(72);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageMargins(QMarginsF());
        writer.setTitle(title + QStringLiteral(" User Guide"));
        writer.setCreator(title);
        document.documentLayout()->setPaintDevice(&writer);
        paginate(document);
        draw(document, writer, title, date.toString(QStringLiteral("d MMMM yyyy")));
    }
    target.write(madeReproducible(buffer.data(), date));
    return target.flush() ? 0 : 1;
}
