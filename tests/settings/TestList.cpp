// SPDX-License-Identifier: MIT
#include "tests/settings/TestList.h"

#include <utility>

#include "settings/application/TopScreen.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/Rows.h"

namespace fixtures {

using platform::PSSpecifier;
using platform::Value;

PLATFORM_REGISTER_CELL_CLASS(CountedCell)
PLATFORM_REGISTER_CLASS(TestList)

int CountedCell::made = 0;

CountedCell::CountedCell(std::int64_t style, std::string reuse, std::shared_ptr<PSSpecifier> specifier)
    : PSTableCell(style, std::move(reuse), std::move(specifier)) {
    ++made;
}

void TestList::setRows(platform::SpecifierList rows) {
    specifiers_ = std::make_shared<platform::SpecifierList>(std::move(rows));
}

std::shared_ptr<PSSpecifier> plainRow(const std::string& name, platform::PSCellType kind) {
    return doubles::makeRow(name, kind);
}

Desk::Desk() : list(std::make_shared<TestList>()) {
    list->setRows({});
    application.start();
    settings::TopScreen::now().navigation->pushViewController_animated(list, false);
}

Value Desk::answer(settings::Session& by, const std::string& line) {
    const auto answer = settings::parseJSON(by.answer(line));
    return answer ? *answer : Value();
}

const platform::Array& Desk::rows(const Value& answer) {
    return *doubles::required(answer["state"]["screen"]["rows"].array());
}

}  // namespace fixtures
