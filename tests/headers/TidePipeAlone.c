#include <tide_pipe/tide_pipe.h>
#include <tide_pipe/tide_pipe.h>
