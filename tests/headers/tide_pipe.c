#include "include/tide_pipe/tide_pipe.h"
