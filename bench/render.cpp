// How long a character screen takes to render: beside the plain painter of the tests, which paints
// the same pixels, and beside filling an image of the same size with one colour. Everything is
// measured in turns, in processor time of the one thread, so that other programs and what the
// machine does meanwhile change all of it alike.

#include "ReferencePainter.h"
#include "ScreenRenderer.h"
#include "Table.h"

#include <QGuiApplication>

#include <array>
#include <atomic>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr QSize sizes[] = {{240, 120}, {241, 121}, {480, 240},  {491, 243},
                           {960, 480}, {961, 479}, {1920, 960}, {1919, 959}};
constexpr int rounds = 15;
/// Samples a tenth as long differ by a quarter from one run to the next where screens are large.
constexpr double secondsEach = 0.04;
constexpr double micro = 1e6;

const std::atomic<bool> never = false;

double processorSeconds() {
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// A frame around letters, as on a real screen, with attributes here and there; the letters are
/// other ones everywhere for each `shift`.
ReferenceScreen typicalScreen(int shift) {
    ReferenceScreen screen;
    for (int i = 0; i < 320; ++i) {
        const bool isBorder = i / 40 == 0 || i / 40 == 6;
        screen.text += static_cast<char>(isBorder       ? 205
                                         : i % 40 == 20 ? 179
                                                        : 33 + (i + shift) % 94);
        screen.attr += static_cast<char>(i / 40 == 7 ? 1 : i % 50 < 5 ? 2 : 0);
    }
    return screen;
}

TextScreen screenOf(const ReferenceScreen& reference, const QSize& size) {
    TextScreen screen;
    screen.text = QVector<char>(reference.text.begin(), reference.text.end());
    screen.attr = QVector<char>(reference.attr.begin(), reference.attr.end());
    screen.font = QFont(reference.family);
    screen.fitFont(size);
    return screen;
}

/// What is measured, over and over.
class Subject {
public:
    explicit Subject(std::function<void()> once) : m_once(std::move(once)) {
        m_once();
        // Asking for the time takes as long as painting a cell.
        while (secondsOf(m_runs) < secondsEach)
            m_runs *= 2;
    }

    /// One sample of many runs.
    void measure() { m_samples.push_back(secondsOf(m_runs) / m_runs * micro); }

    double microseconds() const { return median(m_samples); }

private:
    double secondsOf(int runs) const {
        const double start = processorSeconds();
        for (int i = 0; i < runs; ++i)
            m_once();
        return processorSeconds() - start;
    }

    std::function<void()> m_once;
    int m_runs = 1;
    std::vector<double> m_samples;
};

/// Renders three screens by turns: with two, each image would always show the right one already.
class Turns {
public:
    explicit Turns(std::array<TextScreen, 3> screens, const QSize& size)
        : m_screens(std::move(screens)), m_size(size) {
        for (int i = 0; i < 6; ++i)
            next();
    }

    void next() {
        m_shown = m_renderer.render(m_screens[m_turn], m_size, never).image;
        m_turn = (m_turn + 1) % m_screens.size();
    }

private:
    ScreenRenderer m_renderer;
    std::array<TextScreen, 3> m_screens;
    QSize m_size;
    std::size_t m_turn = 0;
    QImage m_shown;
};

std::vector<std::string> rowOf(const QSize& size) {
    const ReferenceScreen plain = typicalScreen(0);
    const int letters = ReferencePainter::pixelSize(plain.family, size);
    Turns all(
        {screenOf(plain, size), screenOf(typicalScreen(1), size), screenOf(typicalScreen(2), size)},
        size);
    std::array<TextScreen, 3> similar = {screenOf(plain, size), screenOf(plain, size),
                                         screenOf(plain, size)};
    similar[1].text[100] = '#';
    similar[2].text[100] = '@';
    Turns one(similar, size);

    Subject reference([&] { ReferencePainter::paint(plain, size, letters); });
    Subject allLetters([&] { all.next(); });
    Subject oneCell([&] { one.next(); });
    const auto atlas = CellAtlas::shared(screenOf(plain, size).look(size));
    const std::vector<CellCode> cells = screenOf(plain, size).cells();
    Subject newImage([&] { ScreenCanvas(size).paint(atlas, cells, never); });
    Subject fill([&] { QImage(size, QImage::Format_RGB32).fill(Qt::white); });
    // With the letters kept for nobody yet, in colours that nobody has.
    QRgb color = 0;
    Subject first([&] {
        TextScreen screen = screenOf(plain, size);
        screen.colors = ColorTables(QColor::fromRgb(++color), Qt::white, Qt::red);
        ScreenRenderer().render(screen, size, never);
    });
    for (int round = 0; round < rounds; ++round) {
        for (Subject* subject : {&reference, &allLetters, &oneCell, &newImage, &fill, &first})
            subject->measure();
    }
    const double painted = allLetters.microseconds();
    return {std::to_string(size.width()) + " x " + std::to_string(size.height()),
            fixed(reference.microseconds(), 0),
            fixed(painted, 1),
            fixed(reference.microseconds() / painted, 1),
            fixed(fill.microseconds(), 1),
            fixed(painted / fill.microseconds(), 2),
            fixed(oneCell.microseconds(), 2),
            fixed(painted / oneCell.microseconds(), 1),
            fixed(newImage.microseconds(), 1),
            fixed(newImage.microseconds() / fill.microseconds(), 2),
            fixed(first.microseconds(), 0),
            fixed(first.microseconds() / reference.microseconds(), 2)};
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    Table table({"size", "reference us", "all letters us", "reference / all", "fill us",
                 "all / fill", "one cell us", "all / one", "new image us", "new / fill", "first us",
                 "first / reference"});
    for (const QSize& size : sizes)
        table.add(rowOf(size));
    table.print();
    return 0;
}
