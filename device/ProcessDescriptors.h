// SPDX-License-Identifier: MIT
#pragma once

/// pidfd_open() and pidfd_send_signal(). Their header does not say by itself that they are C's.
extern "C" {
#include <sys/pidfd.h>
}
