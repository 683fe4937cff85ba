// SPDX-License-Identifier: MIT
// networks-tool: the networks of the machine's network manager as the phone sees them, a line each on
// standard output; the log's lines go to standard error.
#include <cstdio>

#include "device/networks/NetworkManagerNetworks.h"

int main() {
    device::NetworkManagerNetworks networks;
    for (const std::string& name : networks.knownSSIDs()) std::puts(name.c_str());
    return 0;
}
