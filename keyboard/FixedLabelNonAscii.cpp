#include "FixedLabelNonAscii.h"

void FixedLabelNonAscii::relabel(unsigned char /*state*/) {}

QString FixedLabelNonAscii::label(unsigned char /*state*/) const {
    return text();
}
