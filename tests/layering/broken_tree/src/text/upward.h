#include "os/mutex.h"
