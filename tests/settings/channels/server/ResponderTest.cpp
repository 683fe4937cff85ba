// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "settings/channels/server/Responder.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace settings::server {

namespace {

const std::string secret(64, 'a');
const std::string png = "\x89PNG\r\n\x1a\n----";

class ResponderTest : public testing::Test {
  protected:
    ResponderTest() {
        directory_.write("page/index.html", "<!doctype html>");
        directory_.write("page/app.js", "go()");
    }

    Request request(std::string target) const {
        return {"GET",
                std::move(target),
                {{"host", "127.0.0.1:8123"}, {"authorization", "Bearer " + secret}},
                false};
    }

    Answer answer(const Request& request) const { return responder_.answer(request); }

    Response response(const Request& request) const { return std::get<Response>(responder_.answer(request)); }

    static std::string field(const Response& response, std::string_view name) {
        std::string value;
        for (const auto& [fieldName, fieldValue] : response.fields)
            if (fieldName == name) value += fieldValue;
        return value;
    }

    testing_support::TemporaryDirectory directory_;
    std::map<std::string, std::string, std::less<>> images_;
    Responder responder_{8123, secret, (directory_.path() / "page").string(),
                         [this](std::string_view name) -> std::optional<std::string> {
                             const auto found = images_.find(name);
                             if (found == images_.end()) return std::nullopt;
                             return found->second;
                         }};
};

}  // namespace

TEST_F(ResponderTest, page_isAnybodys) {
    for (const char* target : {"/", "/index.html", "/app.js"}) {
        Request other = request(target);
        other.fields.pop_back();
        EXPECT_EQ(response(other).status, 200u) << target;
    }
}

TEST_F(ResponderTest, withoutTheSecret_nothingOfThePhoneIsLookedUp) {
    for (const char* target : {"/image/A", "/image/Missing", "/sounds/A"}) {
        Request other = request(target);
        for (const std::string& value : {"Bearer " + std::string(64, 'b'), "Bearer " + secret + "a",
                                         "Basic " + secret, secret, std::string("Bearer"), std::string()}) {
            other.fields.back().second = value;
            EXPECT_EQ(response(other).status, 401u) << target << ' ' << value;
            EXPECT_EQ(field(response(other), "WWW-Authenticate"), "Bearer");
        }
        other.fields.back() = {"Cookie", "quietrix-settings-8123=" + secret};
        EXPECT_EQ(response(other).status, 401u) << target;
        other.fields.pop_back();
        EXPECT_EQ(response(other).status, 401u) << target;
        other.target += "?secret=" + secret;
        EXPECT_EQ(response(other).status, 401u) << target;
    }
}

TEST_F(ResponderTest, secretTwice_isNone) {
    Request twice = request("/sounds/A");
    EXPECT_TRUE(responder_.showsSecret(twice));
    twice.fields.push_back(twice.fields.back());
    EXPECT_FALSE(responder_.showsSecret(twice));
    EXPECT_EQ(response(twice).status, 401u);
}

TEST_F(ResponderTest, hostMissingTwiceOrForeign_isRefused) {
    Request other = request("/");
    other.fields.emplace_back("Host", "127.0.0.1:8123");
    EXPECT_EQ(response(other).status, 421u);
    other.fields.erase(other.fields.begin());
    EXPECT_EQ(response(other).status, 200u);
    other.fields.pop_back();
    EXPECT_EQ(response(other).status, 421u);
    other.fields.emplace_back("Host", "example:8123");
    EXPECT_EQ(response(other).status, 421u);
}

TEST_F(ResponderTest, originOfTheOtherOwnName_isForeign) {
    Request other = request("/app.js");
    other.fields.emplace_back("Origin", "http://127.0.0.1:8123");
    EXPECT_EQ(response(other).status, 200u);
    other.fields.back().second = "http://localhost:8123";
    EXPECT_EQ(response(other).status, 403u);
    other.fields.back().second = "null";
    EXPECT_EQ(response(other).status, 403u);
}

TEST_F(ResponderTest, originTwice_isForeign) {
    Request twice = request("/app.js");
    twice.fields.emplace_back("Origin", "http://127.0.0.1:8123");
    ASSERT_EQ(response(twice).status, 200u);
    twice.fields.emplace_back("Origin", "http://example.org");
    EXPECT_EQ(response(twice).status, 403u);
    twice.fields.back().second = "http://127.0.0.1:8123";
    EXPECT_EQ(response(twice).status, 403u);
}

TEST_F(ResponderTest, otherMethods_areNamedTheAllowedOnes) {
    for (const char* method : {"POST", "PUT", "DELETE", "OPTIONS", "CONNECT", "TRACE", "get", "BREW"}) {
        Request other = request("/");
        other.method = method;
        EXPECT_EQ(response(other).status, 405u) << method;
        EXPECT_EQ(field(response(other), "Allow"), "GET, HEAD");
    }
}

TEST_F(ResponderTest, fileKnownToTheBrowser_isNotSentAgainUntilItChanges) {
    Request again = request("/app.js");
    const Response first = response(again);
    EXPECT_EQ(first.body, "go()");
    EXPECT_EQ(field(first, "Cache-Control"), "no-cache");
    again.fields.emplace_back("If-None-Match", field(first, "ETag"));
    EXPECT_EQ(response(again).status, 304u);
    EXPECT_EQ(response(again).body, "");
    directory_.write("page/app.js", "no()");
    EXPECT_EQ(response(again).status, 200u);
    EXPECT_EQ(response(again).body, "no()");
}

TEST_F(ResponderTest, pageThatWasMovedAway_isSaid) {
    std::filesystem::rename(directory_.path() / "page", directory_.path() / "moved");
    EXPECT_EQ(response(request("/")).status, 404u);
    EXPECT_THAT(response(request("/")).body, testing::HasSubstr("moved or removed while it ran"));
    EXPECT_EQ(response(request("/app.js")).body, "There is nothing at this address.\n");
    const Responder pageless(8123, secret, "", {});
    EXPECT_EQ(std::get<Response>(pageless.answer(request("/"))).body, "There is nothing at this address.\n");
}

TEST_F(ResponderTest, image_isServedByNameWhateverTheQuery) {
    images_["Speaker Mute@2x"] = directory_.write("image.png", png);
    const Response given = response(request("/image/Speaker%20Mute%402x?device=1"));
    EXPECT_EQ(given.status, 200u);
    EXPECT_EQ(given.body, png);
    EXPECT_EQ(field(given, "Content-Type"), "image/png");
}

TEST_F(ResponderTest, imageThatIsNoneOrTooLong_isNotFound) {
    images_["Text"] = directory_.write("text.png", "hello");
    images_["Missing"] = (directory_.path() / "missing.png").string();
    images_["Folder"] = directory_.path().string();
    images_["Long"] = directory_.write("long.png", png + std::string((std::size_t{8} << 20), '-'));
    for (const char* name : {"Text", "Missing", "Folder", "Long", "Unknown", "", "..", "%00"})
        EXPECT_EQ(response(request(std::string("/image/") + name)).status, 404u) << name;
}

TEST_F(ResponderTest, noImageLookUp_hasNoImages) {
    const Responder plain(8123, secret, directory_.path().string(), {});
    EXPECT_EQ(std::get<Response>(plain.answer(request("/image/A"))).status, 404u);
}

TEST_F(ResponderTest, sound_isAskedForByItsDecodedIdentifier) {
    const Answer given = answer(request("/sounds/texttone%3ACalendar%20Alert?v=1"));
    ASSERT_TRUE(std::holds_alternative<AskForSound>(given));
    EXPECT_EQ(std::get<AskForSound>(given).identifier, "texttone:Calendar Alert");
}

TEST_F(ResponderTest, soundByAPathOrWithoutAName_isNotAskedFor) {
    for (const char* name : {"", "..", "../page/app.js", "..%2Fpage%2Fapp.js", "%00", "a%5Cb", "%zz", "a//b"})
        EXPECT_EQ(response(request(std::string("/sounds/") + name)).status, 404u) << name;
}

TEST_F(ResponderTest, soundGiven_hasItsTypeAndIsNotSentTwice) {
    const platform::ToneSound chord{"audio/ogg", {'O', 'g', 'g', 0}};
    Request again = request("/sounds/Chord");
    const Response given = Responder::sound(again, chord);
    EXPECT_EQ(given.status, 200u);
    EXPECT_EQ(given.body, std::string("Ogg\0", 4));
    EXPECT_EQ(field(given, "Content-Type"), "audio/ogg");
    EXPECT_EQ(field(given, "X-Content-Type-Options"), "nosniff");
    again.fields.emplace_back("If-None-Match", field(given, "ETag"));
    EXPECT_EQ(Responder::sound(again, chord).status, 304u);
}

TEST_F(ResponderTest, soundThatIsNone_isNotFoundForAReason) {
    const Request asked = request("/sounds/Chord");
    const Response missing = Responder::sound(asked, platform::failure("There is no such tone."));
    EXPECT_EQ(missing.status, 404u);
    EXPECT_EQ(missing.body, "There is no such tone.\n");
    for (const char* type :
         {"text/html", "audio/", "audio/ogg\r\nSet-Cookie: a=b", "audio/ogg; codecs=a", ""})
        EXPECT_EQ(Responder::sound(asked, platform::ToneSound{type, {'a'}}).status, 404u) << type;
    const platform::ToneSound longest{"audio/wav", platform::Data((std::size_t{8} << 20) + 1)};
    EXPECT_EQ(Responder::sound(asked, longest).status, 404u);
}

TEST_F(ResponderTest, webSocket_isAcceptedAtItsAddressWithAnOriginOnly) {
    Request upgrade = request("/ws");
    upgrade.asksForWebSocket = true;
    // A browser has no way of sending the secret along; it comes as the first message.
    upgrade.fields.pop_back();
    EXPECT_EQ(response(upgrade).status, 403u);
    upgrade.fields.emplace_back("Origin", "http://127.0.0.1:8123");
    EXPECT_TRUE(std::holds_alternative<AcceptWebSocket>(answer(upgrade)));
    upgrade.target = "/";
    EXPECT_EQ(response(upgrade).status, 404u);
    upgrade.target = "/ws";
    upgrade.asksForWebSocket = false;
    EXPECT_EQ(response(upgrade).status, 426u);
}

TEST_F(ResponderTest, everyKindOfAnswer_carriesTheSecurityHeaders) {
    Request foreign = request("/");
    foreign.fields.clear();
    Request stranger = request("/image/A");
    stranger.fields.pop_back();
    for (const Response& given : {response(request("/")), response(request("/missing")), response(foreign),
                                  response(stranger), Responder::refusal(400, "No.")}) {
        EXPECT_TRUE(
            field(given, "Content-Security-Policy").starts_with("default-src 'none'; script-src 'self';"));
        EXPECT_EQ(field(given, "X-Content-Type-Options"), "nosniff");
        EXPECT_EQ(field(given, "Referrer-Policy"), "no-referrer");
        EXPECT_EQ(field(given, "Cross-Origin-Opener-Policy"), "same-origin");
        EXPECT_EQ(field(given, "Cross-Origin-Resource-Policy"), "same-origin");
        EXPECT_NE(field(given, "Cache-Control"), "");
        EXPECT_EQ(field(given, "Set-Cookie"), "");
    }
}

}  // namespace settings::server
