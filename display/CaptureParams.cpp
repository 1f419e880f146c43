#include "CaptureParams.h"

#include "PlainVariants.h"

#include <QDataStream>
#include <QIODevice>

namespace {

constexpr int currentVersion = 3;
/// More than any path or number is long; keeps a damaged record from filling the dialog.
constexpr int maxTextLength = 4096;

/// Visits the fields in the order in which they are stored, each with the version that has it
/// first; for writing (const parameters) as for reading.
template <typename Params, typename Visit>
void visitFields(Params& params, Visit&& visit) {
    visit(1, params.sizeChecked);
    visit(1, params.height);
    visit(1, params.width);
    visit(1, params.cursorChecked);
    visit(1, params.previousFile);
    visit(1, params.incrementChecked);
    visit(1, params.counter);
    visit(1, params.fileName);
    visit(1, params.directory);
    visit(2, params.border);
    visit(3, params.borderChecked);
    visit(3, params.units);
}

} // namespace

QByteArray CaptureParams::toBytes() const {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << QVariant(currentVersion);
    visitFields(*this, [&stream]<typename Value>(int /*since*/, const std::optional<Value>& field) {
        stream << QVariant::fromValue(field.value_or(Value()));
    });
    return bytes;
}

CaptureParams CaptureParams::fromBytes(const QByteArray& bytes) {
    CaptureParams params;
    PlainVariants variants(bytes);
    const int version = variants.next().toInt();
    visitFields(params, [&]<typename Value>(int since, std::optional<Value>& field) {
        if (version < since)
            return;
        const QVariant value = variants.next();
        if (!value.isValid())
            return;
        if constexpr (std::is_same_v<Value, QString>)
            field = value.toString().left(maxTextLength);
        else
            field = value.value<Value>();
    });
    return params;
}
