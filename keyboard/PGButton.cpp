#include "PGButton.h"
