#include "CaptureControl.h"
#include "CaptureParams.h"

#include <QApplication>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void startApplication() {
    static int argc = 1;
    static char name[] = "capture_record";
    static char* argv[] = {name, nullptr};
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QApplication application(argc, argv);
}

void checkCapture(const CaptureInfo& info) {
    const bool sane = info.fileName.endsWith(QStringLiteral(".pdf")) && info.width >= 0 &&
                      info.height >= 0 && info.border >= 0;
    if (!sane)
        std::abort();
}

} // namespace

/// Whatever a settings store holds, what is read of it survives being stored, and the dialog that
/// shows it asks for captures that make sense.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray record(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const CaptureParams params = CaptureParams::fromBytes(record);
    const QByteArray stored = params.toBytes();
    if (CaptureParams::fromBytes(stored).toBytes() != stored)
        std::abort();

    startApplication();
    CaptureControl control(nullptr, nullptr);
    QObject::connect(&control, &CaptureControl::capture, checkCapture);
    control.setParams(record);
    control.triggerCapture();
    if (CaptureParams::fromBytes(control.getParams()).toBytes() != control.getParams())
        std::abort();
    return 0;
}
