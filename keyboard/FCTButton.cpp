#include "FCTButton.h"
