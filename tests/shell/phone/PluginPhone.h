// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/preferences/PSListController.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UINavigationController.h"
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

    /// Shows the screen as the first of a navigation controller in the window.
    std::shared_ptr<platform::UINavigationController> show(
        const std::shared_ptr<platform::UIViewController>& screen);

  private:
    std::vector<std::string> pluginFiles_;
};

/// The product's version, as the build knows it.
std::string productVersion();

/// The alert or sheet on top of everything; null when something else is.
std::shared_ptr<platform::UIAlertController> shownAlert();

/// The rows' names, "-" for a row without one, joined by ", ".
std::string rowNames(platform::PSListController& screen);

/// What the events of a kind say under the key, joined by ", ".
std::string joined(const std::vector<platform::Dictionary>& events, std::string_view key);

}  // namespace doubles
