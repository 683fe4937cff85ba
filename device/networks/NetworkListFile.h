// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/foundation/NetworkSource.h"

namespace device {

/// The remembered networks in a property-list file of the host: an array of dictionaries, each with the
/// network's name under "SSID", as a string or as the data that its bytes are.
class NetworkListFile : public platform::NetworkSource {
  public:
    /// What it means that the file is not there.
    enum class Missing { IsEmpty, IsAFault };

    NetworkListFile(std::string path, Missing missing);

    /// A file that is no such list is logged at each call, and gives nothing; so is, once for all of them,
    /// what has no name, and is left out.
    std::vector<std::string> knownSSIDs() override;
    /// Whether the list has a network: a phone with a list of its own is where its networks are.
    bool isConnected() override;

  private:
    std::string path_;
    Missing missing_;
    /// Which state of the file it was that had a network or none.
    std::string lookedAt_;
    bool hadOne_ = false;
};

}  // namespace device
