#include "text/wide_string.h"
