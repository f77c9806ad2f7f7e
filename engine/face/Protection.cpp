#include "engine/core/Failure.h"
#include "include/tide_pipe/tide_pipe.h"

using tide::fail;
using tide::Failure;

int TP_SetSecretKey(int, const char*)
{
    return fail(Failure::NotSupported);
}

int TP_Encrypt(int, const char*, char*, int*, int, bool)
{
    return fail(Failure::NotSupported);
}

int TP_Decrypt(int, const char*, char*, int*, int, bool)
{
    return fail(Failure::NotSupported);
}
