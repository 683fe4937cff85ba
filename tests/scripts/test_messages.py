#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Shows small sources to the search for messages and to the comparison with the document, and expects what they find."""

import unittest

import messages
import test_troubleshooting as troubleshooting
from messages import Message


def texts(path, source):
    return [each.text for each in messages.of_file(path, source)]


def cpp(source):
    return texts("a/A.cpp", source)


class MessagesOfCpp(unittest.TestCase):
    def test_literalInACall_isFoundWithItsLine(self):
        found = messages.of_cpp("a/A.cpp", '\n\nreturn failure("It is gone.");\n')
        self.assertEqual([Message("a/A.cpp", 3, "It is gone.")], found)

    def test_adjacentLiterals_areOne(self):
        self.assertEqual(["It is gone."], cpp('return failure("It is "  // so far\n    "gone.");'))

    def test_sum_hasGapsForWhatIsNoLiteral(self):
        self.assertEqual(['The row "…" is gone, and … are left.'],
                         cpp(r'return platform::failure("The row \"" + name(a, b) + std::string("\" is gone, and ") +'
                             '\n    std::to_string(count) + " are left.");'))

    def test_conditionalInASum_givesBothSentences(self):
        self.assertEqual(["The row … has no control.", "The row … is disabled."],
                         cpp('return failure("The row " + name + (control ? " is disabled." : " has no control."));'))

    def test_conditionalAsArgument_givesBothSentences(self):
        self.assertEqual(["It is gone.", "There is none of … here."],
                         cpp('return failure(was ? "It is gone." : "There is none of " + name + " here.");'))

    def test_nestedConditional_givesAllSentences(self):
        self.assertEqual(["It is gone.", "It is new.", "It is old."],
                         sorted(cpp('return failure(a ? "It is gone." : b ? "It is new." : "It is old.");')))

    def test_rawString_isAText(self):
        self.assertEqual(['"side" must be "left", no more.'], cpp('return failure(R"x("side" must be "left", no more.)x");'))

    def test_comments_areNone(self):
        self.assertEqual([], cpp('// return failure("It is gone.");\n/* log("It is gone."); */'))

    def test_signsOfACommentInAText_areText(self):
        self.assertEqual(["See http://… for it.", "It is gone."],
                         cpp('log("See http://" + host + " for it.");\nlog("It is gone.");'))

    def test_escapesAndLineEnds_areWhatTheyStandFor(self):
        self.assertEqual(["It is “gone”."], cpp('log("\\x1b[31mIt is \\u201cgone\\u201d.\\n");'))

    def test_stream_isASumWithoutTheStream(self):
        self.assertEqual(["program: The answer … came late."],
                         cpp("std::cerr << \"program: The answer \" << number << \" came late.\" << '\\n';"))

    def test_appendedText_goesOnWhatWasThere(self):
        self.assertEqual(["The file is damaged", "… and could not be put aside: …."],
                         cpp('std::string line = "The file is damaged";\nline += " and could not be put aside: " + why + ".";'))

    def test_textsOfATableAndOfAConstant_areFoundWhereTheyStand(self):
        self.assertEqual(["an integer is cut off", "This screen has no rows."],
                         cpp('constexpr Sentence sentences[] = {{Problem::CutOff, "an integer is cut off"}};\n'
                             'constexpr const char* noRows = "This screen has no rows.";\nreturn failure(noRows);'))

    def test_bracesOfAnError_areACall(self):
        self.assertEqual(["Gone."], cpp('return platform::Error{"Gone."};'))

    def test_oneWord_isAMessageOnlyWhereErrorsAreMade(self):
        self.assertEqual(["Gone."], cpp('fields.has("value");\nreturn failure("Gone.");'))

    def test_textAsAnArgumentOfAnArgument_isFoundToo(self):
        self.assertEqual(["could not be read", "It is gone."],
                         cpp('return failure(place(" could not be read") + wrapped("It is gone."));'))

    def test_otherArguments_areLookedAtToo(self):
        self.assertEqual(["Look there once more.", "It is gone."], sorted(cpp('wrongUse("It is gone.", hint("Look there once more."));'), reverse=True))

    def test_memberOfAWrappersName_isACall(self):
        self.assertEqual(["it is", "… all gone."], cpp('return failure(names.string("it is") + " all gone.");'))

    def test_callOfWhatTheSourcesDoNotTell_isToldWithTheCall(self):
        self.assertEqual([Message("a/A.cpp", 2, None, "failure(reasonOf(a))")],
                         messages.of_cpp("a/A.cpp", "\nreturn failure(reasonOf(a));"))
        self.assertEqual([None], cpp("platform::log(line);"))
        self.assertEqual([None], cpp('return failure("\\"" + path + "\\" " + reason + ".");'))

    def test_whatWasSaidElsewhere_isHandedOn(self):
        self.assertEqual([], cpp("return complain(error.what());\nlog(prefix + list.error().localizedDescription);"))

    def test_declarations_areNoCalls(self):
        self.assertEqual([], cpp("std::unexpected<Error> failure(std::string description);\nvoid log(const std::string& line) {}\n"
                                 "struct Error { std::string localizedDescription; };\nNotificationLog log(path);"))

    def test_labels_areNoMessages_butSentencesThatTheUserIsShownAre(self):
        self.assertEqual(["Unable to reset the profiles."],
                         cpp('row(localized("Send Now And Then"), localized("Vibrate"));\n'
                             'showError(localized("Unable to reset the profiles."));'))

    def test_includesAndMacros_areNone(self):
        self.assertEqual(["It is gone."], cpp('#include "a b/it is.h"\n#define WORDS "some more words" \\\n  "go on here"\nlog("It is gone.");'))

    def test_developersWords_areNone(self):
        self.assertEqual([], cpp('static_assert(a == b, "These must be the same.");\nassert(a && "These must be the same.");'))


class MessagesOfOthers(unittest.TestCase):
    def test_typescript_sentencesAndWhatIsSaid(self):
        source = """
            // 'It is a comment.'
            part.className = 'wb-entry wb-wide';
            this.outcome.say('not a sentence', true);
            return isOn ? 'It is on.' : `It is ${count > 1 ? `${count} times` : 'not'} on.`;
            render(html`<p class="wb-hint a">There is no such file.</p><b>Earlier one</b>${text}`, x);
        """
        self.assertEqual(["It is on.", "It is … on.", "There is no such file.", "not a sentence"],
                         sorted(texts("settings/web/src/a.ts", source)))

    def test_templateThatDoesNotEnd_isTold(self):
        found = messages.of_javascript("a.ts", "const pattern = /[`]/;\nsay('It is gone.');")
        self.assertEqual([Message("a.ts", 1, None, "a template that does not end")], found)

    def test_wordsOfThePage_areAllLookedAt(self):
        self.assertEqual(["Settings cannot be reached", "“…” could not be saved."],
                         texts("settings/web/src/words/en.ts", "a: 'Back', b: 'Settings cannot be reached', c: '“{text}” could not be saved.',"))

    def test_shell_saysWithGaps(self):
        self.assertEqual(["The build in …/… failed: see ….", "FAILED: …", "./test: nothing differs from …"],
                         texts("run", '#!/usr/bin/env bash\n# say "It is a comment."\nsay "The build in $PWD/${log%/*} failed: see $(basename "$a")."\n'
                                      '  echo "FAILED: $name"\nx || { echo "./test: nothing differs from $base" >&2; exit 2; }\n'
                                      'echo "$step, $label"\necho "${entry%%=*}"'))

    def test_shell_whatIsNoText_isTold(self):
        self.assertEqual([Message("a.sh", 1, None, "say $words")], messages.of_file("a.sh", "say $words"))

    def test_python_whatGoesToStandardErrorOrEnds(self):
        self.assertEqual(["Left out: … tests.", "It … ended.", "There are none.", None],
                         texts("a.py", 'print(f"Left out: {n} tests.", file=sys.stderr)\nraise SystemExit("It " + x + " ended.")\n'
                                       'raise ValueError("There are none.")\nprint("It is fine.")\nsys.exit(1)\nsys.exit(words)'))

    def test_fileWithoutAnExtension_isWhatItsFirstLineSays(self):
        self.assertEqual(["It is gone."], texts("a/tool", '#!/usr/bin/env python3\nraise SystemExit("It is gone.")'))
        self.assertEqual([], texts("LICENSE", 'say "It is gone."'))

    def test_cmake_messages(self):
        self.assertEqual(['The … has no "Version".'], texts("CMakeLists.txt", 'message(FATAL_ERROR "The ${name} has no \\"Version\\".")'))


class Comparison(unittest.TestCase):
    DOCUMENT = "\n| message | means | do |\n|---|---|---|\n| `It is gone.`<br>`It is … now.` | So it is. | Nothing to do. |\n"

    def problems(self, *found, document=DOCUMENT, unread=()):
        return list(troubleshooting.problems([Message("a/A.cpp", 7, *each) if isinstance(each, tuple) else Message("a/A.cpp", 7, each)
                                              for each in found], document, list(unread)))

    def test_eachMessageWithItsRow_isNoProblem(self):
        self.assertEqual([], self.problems("It is gone.", "It is … now.", "It is gone."))

    def test_missingRow_isToldOnceWithTheRowToPaste(self):
        problems = self.problems("It is gone.", "It is … now.", "It is new.", "It is new.")
        self.assertEqual(["a/A.cpp:7: docs/troubleshooting.md has no row for this message:\n"
                          "| `It is new.` | what it means | what to do |"], problems)

    def test_pastedRow_isOne(self):
        row = troubleshooting.row_for('Give "a|b" or none.')
        self.assertIn(r'`Give "a\|b" or none.`', row)
        self.assertEqual([], self.problems('Give "a|b" or none.', document="\n" + row + "\n"))

    def test_rowWithoutAMessage_isToldWithItsLine(self):
        self.assertEqual(["docs/troubleshooting.md:4: no source has the message `It is … now.` any more; take it out, or word it as it is now"],
                         self.problems("It is gone."))

    def test_messageWithTwoRows_isTold(self):
        self.assertIn("docs/troubleshooting.md:5: the message `It is gone.` has a row already, in line 4",
                      self.problems("It is gone.", "It is … now.", document=self.DOCUMENT + "| `It is gone.` | So. | Do. |\n"))

    def test_rowWithoutMeaningOrAdvice_isNone(self):
        self.assertEqual(2, len(self.problems("It is gone.", "It is … now.", document="\n| `It is gone.`<br>`It is … now.` | So it is. | |\n")))

    def test_partOfASentence_needsNoRow(self):
        self.assertEqual([], self.problems("is cut short", "… and all before it", "expected …, found …", document=""))
        self.assertEqual(2, len(self.problems("is cut short.", "could not be read: …", document="")))

    def test_unreadCall_isToldUnlessItIsNamed(self):
        call = (None, "log(line)")
        self.assertEqual(1, len(self.problems(call, document="")))
        self.assertEqual([], self.problems(call, document="", unread=[("a/A.cpp", "log(line)", "a reason")]))

    def test_namedCallThatIsGone_isTold(self):
        self.assertEqual(["UNREAD of test_troubleshooting.py: there is no log(line) in a/A.cpp any more"],
                         self.problems(document="", unread=[("a/A.cpp", "log(line)", "a reason")]))

    def test_whatIsPassedOver_isBoundToItsPlace(self):
        self.assertIsNotNone(troubleshooting.passing_over(Message("settings/channels/Serve.cpp", 1, "Quietrix Settings is at …")))
        self.assertIsNone(troubleshooting.passing_over(Message("device/A.cpp", 1, "Quietrix Settings is at …")))


if __name__ == "__main__":
    unittest.main()
