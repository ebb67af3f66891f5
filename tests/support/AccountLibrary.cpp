// SPDX-License-Identifier: Apache-2.0
// A stand-in for the host's library: an account shorter than its buffer, a password that fills it.
#include <cstring>

extern "C" __attribute__((visibility("default"))) void GetUsefullTimer(const char *selector, char *buffer)
{
    if (std::strcmp(selector, "U") == 0)
        std::memcpy(buffer, " medico", 7);
    else if (std::strcmp(selector, "P") == 0)
        std::memcpy(buffer, "parola-segreta\xE0", 15);
}
