#pragma once

// Its header declares a function outside its own extern "C", and includes standard headers that must not be inside
// ours.
#include <cstdlib>
#include <cstring>

extern "C" {
#include <alsa/asoundlib.h>
}
