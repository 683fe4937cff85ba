// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "settings/application/Application.h"
#include "settings/checking/AskedResources.h"
#include "settings/checking/Finding.h"

namespace settings {

enum class Timings { Off, On };

/// Goes from the bundle's first screen to every screen that rows and links lead to, looks at each and leaves
/// it again. Nothing else is pressed, and no control is moved. Main thread; not from within a task.
class ScreenTour {
  public:
    /// Of the rows of one screen that open screens of one class, so many are opened; of a longer list, so
    /// many rows are looked at.
    static constexpr int sameScreens = 5;
    static constexpr std::int64_t rowsOfScreen = 200;
    /// No way is gone further than this, so that screens that open each other come to an end.
    static constexpr std::size_t deepest = 8;
    /// What takes longer is slow.
    static constexpr double slowMilliseconds = 100;

    ScreenTour(Application& application, AskedResources& asked, Findings& findings, Timings timings)
        : application_(application), asked_(asked), findings_(findings), timings_(timings) {}

    /// The first screen must be on top, and is when it ends. What the bundle was asked for since the last
    /// tour counts as asked for on the first screen.
    void go(const std::string& language);

    /// How many observe each notification just now, but for those that were told to have stayed.
    using Observers = std::map<std::string, std::int64_t>;
    Observers observers() const;
    /// Does what leaves the screen on top, and then tells if that screen, or observers of something, stayed.
    /// `before` are the observers from before the screen was opened.
    void leave(const Observers& before, const std::function<void()>& leaving);

    /// The classes of the screens that were looked at.
    const std::set<std::string>& seen() const { return seen_; }

  private:
    void visit(std::size_t depth);
    void look(const std::string& screen);
    /// Tells what the bundle was asked for and does not have.
    void tellMissing(const std::string& screen);
    void visitRows(std::size_t depth);
    void visitLinks(std::size_t depth);
    /// Opens a screen by that press, goes on from there and comes back.
    void open(std::size_t depth, const std::string& row, const std::function<void()>& press);
    /// The time that it takes, with all that comes of it, is told when it is slow.
    void perform(const std::string& screen, const std::string& row, std::string_view what,
                 const std::function<void()>& command);
    void tell(FindingKind kind, const std::string& screen, const std::string& row, const std::string& subject,
              std::string text);

    Application& application_;
    AskedResources& asked_;
    Findings& findings_;
    Timings timings_;
    std::string language_;
    std::set<std::string> seen_;
    /// The observers that were told, so that no screen beneath is blamed for them once more.
    Observers stayed_;
};

}  // namespace settings
