// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/preferences/PSListController.h"
#include "platform/uikit/UIBarButtonItem.h"
#include "platform/uikit/UIColor.h"
#include "platform/uikit/UIImage.h"
#include "tests/doubles/Phone.h"

namespace doubles {

/// A phone of doubles on which the plug-in's own resources are installed, as its bundle's and with the host
/// application's texts as the main bundle's, and the system's speaker images. What the plug-in keeps for the
/// process (the year, the product information, the store) begins anew with each.
class PluginPhone : public Phone {
  public:
    PluginPhone();
    ~PluginPhone();
    PluginPhone(const PluginPhone&) = delete;
    PluginPhone& operator=(const PluginPhone&) = delete;

    /// Takes the plug-in's bundle off the phone.
    void removePluginBundle();

  private:
    std::vector<std::string> pluginFiles_;
};

/// The product's version, as the build knows it.
std::string productVersion();

/// The rows' names, "-" for a row without one, joined by ", ".
std::string rowNames(platform::PSListController& screen);

/// An image's name, a pattern's, and how a bar button is drawn: the name of its image. "none" for want of
/// one.
std::string nameOf(const std::shared_ptr<platform::UIImage>& image);
std::string nameOfPattern(const std::shared_ptr<platform::UIColor>& color);
std::string nameOfImage(const std::shared_ptr<platform::UIBarButtonItem>& button);

/// What the events of a kind say under the key, joined by ", ".
std::string joined(const std::vector<platform::Dictionary>& events, std::string_view key);

}  // namespace doubles
