// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "platform/preferences/PSListController.h"
#include "platform/uikit/UINavigationController.h"
#include "settings/application/Application.h"
#include "settings/channels/JSON.h"
#include "settings/channels/Session.h"
#include "tests/doubles/Phone.h"

namespace fixtures {

/// Says how many of it were made.
class CountedCell : public platform::PSTableCell {
    PLATFORM_CLASS(CountedCell, platform::PSTableCell)

  public:
    CountedCell(std::int64_t style, std::string reuse, std::shared_ptr<platform::PSSpecifier> specifier);
    static int made;
};

/// A list whose rows a test gives it.
class TestList : public platform::PSListController {
    PLATFORM_CLASS(TestList, platform::PSListController)

  public:
    void setRows(platform::SpecifierList rows);
    platform::SpecifierArray specifiers() override { return specifiers_; }
};

/// A row of that kind without anything.
std::shared_ptr<platform::PSSpecifier> plainRow(const std::string& name, platform::PSCellType kind);

/// The application on a phone of doubles, whose bundle is not there, with a list of the test's own on top.
class Desk {
  public:
    Desk();

    /// The answer to one command line.
    platform::Value answer(const std::string& line) { return answer(session, line); }
    static platform::Value answer(settings::Session& by, const std::string& line);
    /// The rows of the last answer's screen.
    static const platform::Array& rows(const platform::Value& answer);

    doubles::Phone phone;
    settings::Application application{"/Library/PreferenceBundles/Absent.bundle"};
    settings::Session session{application};
    std::shared_ptr<TestList> list;
};

}  // namespace fixtures
