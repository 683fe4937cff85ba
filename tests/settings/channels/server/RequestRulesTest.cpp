// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/channels/server/RequestRules.h"

namespace settings::server {

using namespace std::string_literals;

TEST(SplitTarget, pathAndQuery_areHalvedAtTheFirstMark) {
    const auto target = splitTarget("/image/A?v=1?2");
    ASSERT_TRUE(target);
    EXPECT_EQ(target->path, "/image/A");
    EXPECT_EQ(target->query, "v=1?2");
    EXPECT_EQ(splitTarget("/")->query, "");
}

TEST(SplitTarget, otherForms_areRefused) {
    for (const char* target : {"", "*", "http://127.0.0.1/", "index.html", "?secret=1"})
        EXPECT_FALSE(splitTarget(target)) << target;
}

TEST(DecodePath, escapes_areDecodedOnce) {
    EXPECT_EQ(decodePath("/"), "");
    EXPECT_EQ(decodePath("/a%20b/%C3%A9.js"), "a b/\xc3\xa9.js");
    EXPECT_EQ(decodePath("/%2541"), "%41");
    EXPECT_EQ(decodePath("/a+b"), "a+b");
    EXPECT_EQ(decodePath("/a%2fb%2Fc"), "a/b/c");
    EXPECT_EQ(decodePath("/..a/b.."), "..a/b..");
}

TEST(DecodePath, whatMustNotReachTheFileSystem_isRefused) {
    for (const char* path : {"",
                             "a",
                             "/..",
                             "/../a",
                             "/a/../b",
                             "/a/..",
                             "/%2e%2e/a",
                             "/%2E.",
                             "/a%2f..%2fb",
                             "/.",
                             "/a/./b",
                             "//",
                             "//a",
                             "/a/",
                             "/a//b",
                             "/%2fetc/passwd",
                             "/a%00b",
                             "/a\\b",
                             "/a%5cb",
                             "/..%5c..%5ca"})
        EXPECT_FALSE(decodePath(path)) << path;
}

TEST(DecodePath, brokenEscape_isRefused) {
    for (const char* path : {"/%", "/a%", "/a%4", "/a%4g", "/a%g4", "/%%41", "/a%-1", "/% 1"})
        EXPECT_FALSE(decodePath(path)) << path;
}

TEST(BearerToken, schemeInAnyCase_isTaken) {
    EXPECT_EQ(bearerToken("Bearer abc"), "abc");
    EXPECT_EQ(bearerToken(" bearer \t abc "), "abc");
    EXPECT_EQ(bearerToken("BEARER a=b,c"), "a=b,c");
}

TEST(BearerToken, otherSchemesAndNoToken_areNone) {
    for (const char* header : {"", " ", "Bearer", "Bearer ", "Bearer \t", "abc", "Basic abc", "Bearers abc",
                               "Bearer\tabc", "Bearer a b", "Basic Bearer abc", "Bearer=abc"})
        EXPECT_FALSE(bearerToken(header)) << header;
}

TEST(IsOwnHost, onlyTheTwoNamesWithThePort_areOwn) {
    EXPECT_TRUE(isOwnHost("127.0.0.1:8123", 8123));
    EXPECT_TRUE(isOwnHost("localhost:8123", 8123));
    for (const char* host :
         {"", "127.0.0.1", "localhost", "127.0.0.1:8124", "127.0.0.1:81234", "127.0.0.1:08123",
          "127.0.0.1.example:8123", "example:8123", "localhost.example:8123", "[::1]:8123", "127.0.0.1:8123 ",
          "127.0.0.2:8123", "x127.0.0.1:8123", "127.0.0.1:8123:8123"})
        EXPECT_FALSE(isOwnHost(host, 8123)) << host;
}

TEST(IsOwnHost, portOfHTTPItself_mayBeLeftOut) {
    EXPECT_TRUE(isOwnHost("localhost", 80));
    EXPECT_TRUE(isOwnHost("localhost:80", 80));
}

TEST(IsOwnOrigin, onlyTheHostsOwn_isTaken) {
    EXPECT_TRUE(isOwnOrigin("http://localhost:8123", "localhost:8123"));
    for (const char* origin :
         {"", "null", "https://localhost:8123", "http://127.0.0.1:8123", "http://localhost:812",
          "http://localhost:8123/", "HTTP://localhost:8123", "localhost:8123"})
        EXPECT_FALSE(isOwnOrigin(origin, "localhost:8123")) << origin;
}

TEST(ListsEntityTag, listWeakAndStar_match) {
    EXPECT_TRUE(listsEntityTag("\"a\", W/\"b\" ,\"c\"", "\"b\""));
    EXPECT_TRUE(listsEntityTag(" * ", "\"b\""));
    EXPECT_FALSE(listsEntityTag("\"a\", b, \"bb\"", "\"b\""));
    EXPECT_FALSE(listsEntityTag("", "\"b\""));
}

TEST(IsSameFieldName, caseOfLetters_doesNotMatter) {
    EXPECT_TRUE(isSameFieldName("If-None-Match", "if-NONE-match"));
    EXPECT_FALSE(isSameFieldName("Host", "Hosts"));
    EXPECT_FALSE(isSameFieldName("a@", "a`"));
}

}  // namespace settings::server
