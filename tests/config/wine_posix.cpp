#include "config/wine.h"

bool sab::RunsUnderWine() { return false; }
