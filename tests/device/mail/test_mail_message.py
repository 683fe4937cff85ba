# SPDX-License-Identifier: MIT
"""Message files, read back by Python's own parser: test_mail_message.py MAIL_WRITER [unittest arguments]."""
import email
import email.policy
import email.utils
import plistlib
import subprocess
import sys
import unittest

WRITER = ""

REPORT = {
    "sender": "me@example.net", "date": 817549200.0, "subject": "Quietrix Go - velmora.log", "to": ["support@example.com"],
    "body": "Please donot remove the below information.\nSerial number: F4KE\n", "html": True,
    "attachments": [{"name": "velmora.log", "type": "mime", "data": b"2026-11-28T09:00:00Z something\n"}],
}


def write(**changes):
    return subprocess.run([WRITER], input=plistlib.dumps({**REPORT, **changes}), capture_output=True, timeout=60)


class MessageFile(unittest.TestCase):
    def message(self, **changes):
        """Checks what every message file has, and gives it parsed, with its parts."""
        done = write(**changes)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(done.stderr, b"")
        self.assertNotIn(b"\r", done.stdout)
        self.assertLessEqual(max(len(line) for line in done.stdout.split(b"\n")), 998)
        done.stdout.decode("ascii")
        message = email.message_from_bytes(done.stdout, policy=email.policy.default)
        self.assertEqual(message.get_content_type(), "multipart/mixed")
        self.assertEqual(message["X-Unsent"], "1")
        self.assertEqual(message["MIME-Version"], "1.0")
        for part in message.walk():
            self.assertEqual(part.defects, [])
        return message, list(message.iter_parts())

    def test_report_holdsEveryField(self):
        message, (body, attachment) = self.message()
        self.assertEqual(message["From"], "me@example.net")
        self.assertEqual(message["To"], "support@example.com")
        self.assertEqual(message["Subject"], "Quietrix Go - velmora.log")
        self.assertEqual(email.utils.parsedate_to_datetime(message["Date"]).timestamp(), 817549200 + 978307200)
        self.assertRegex(message["Message-ID"], r"^<[^<>\s]+@example\.net>$")
        self.assertEqual(body.get_content_type(), "text/html")
        self.assertEqual(body.get_content_charset(), "utf-8")
        self.assertEqual(body.get_content(), REPORT["body"])
        self.assertEqual(attachment["Content-Type"], "mime")
        self.assertEqual(attachment["Content-Transfer-Encoding"], "base64")
        self.assertEqual(attachment.get_content_disposition(), "attachment")
        self.assertEqual(attachment.get_filename(), "velmora.log")
        self.assertEqual(attachment.get_payload(decode=True), REPORT["attachments"][0]["data"])

    def test_plainBody_isPlainText(self):
        body = self.message(html=False)[1][0]
        self.assertEqual(body.get_content_type(), "text/plain")
        self.assertEqual(body.get_content(), REPORT["body"])

    def test_everyByte_survivesInAnAttachment(self):
        data = bytes(range(256)) * 300
        attachments = self.message(attachments=[
            {"name": "a.bin", "type": "application/x-thing", "data": data}, {"name": "empty", "type": "mime", "data": b""},
        ])[1][1:]
        self.assertEqual([part.get_payload(decode=True) for part in attachments], [data, b""])
        self.assertEqual([part["Content-Type"] for part in attachments], ["application/x-thing", "mime"])

    def test_otherScripts_surviveEverywhere(self):
        subject = "Grüße 静音 😘 – " + "sehr lang " * 40
        text = "日本語 🙂 = é\n.\nFrom here\n  blank at the end \n" + "x" * 3000 + "\n"
        message, (body, attachment) = self.message(
            subject=subject.strip(), body=text, attachments=[{"name": 'ünï "静" a;b.log', "type": "mime", "data": b"1"}])
        self.assertEqual(message["Subject"], subject.strip())
        self.assertEqual(body.get_content(), text)
        self.assertEqual(attachment.get_filename(), 'ünï "静" a;b.log')
        self.assertEqual(attachment["Content-Type"], "mime")

    def test_severalRecipients_areAllThere(self):
        message = self.message(to=["a@example.com", "b@example.org"])[0]
        self.assertEqual([each.addr_spec for each in message["To"].addresses], ["a@example.com", "b@example.org"])

    def test_foreignLineBreaks_neverMakeAHeader(self):
        message, (body, attachment) = self.message(
            subject="one\r\nBcc: x@example.org", body="a\r\nb\n",
            attachments=[{"name": "n\r\nX-Bad: 1", "type": "mime", "data": b"1"}])
        self.assertNotIn("Bcc", message)
        self.assertNotIn("X-Bad", attachment)
        self.assertEqual(message["Subject"].split(), ["one", "Bcc:", "x@example.org"])
        self.assertEqual(body.get_content(), "a\nb\n")

    def test_draftOfNobody_hasNoSender(self):
        self.assertNotIn("From", self.message(sender="")[0])

    def test_noMessageIdentifier_comesTwice(self):
        self.assertEqual(len({self.message()[0]["Message-ID"] for _ in range(20)}), 20)

    def test_badAddressesAndTypes_areRefusedByName(self):
        for changes, named in (
            ({"to": ["nobody"]}, "nobody"), ({"to": ["a@b.example>\r\nBcc: c@d.example"]}, "a@b.example"), ({"to": [""]}, '""'),
            ({"to": ["a@b, c@d"]}, "a@b, c@d"), ({"sender": "me@"}, "me@"),
            ({"attachments": [{"name": "bad", "type": "x\r\nX-Bad: 1", "data": b""}]}, "bad"),
            ({"attachments": [{"name": "none", "type": "", "data": b""}]}, "none"),
            ({"attachments": [{"name": "long", "type": "x" * 999, "data": b""}]}, "long"),
        ):
            with self.subTest(changes):
                done = write(**changes)
                self.assertEqual((done.returncode, done.stdout), (1, b""))
                self.assertIn(named, done.stderr.decode())


if __name__ == "__main__":
    WRITER = sys.argv.pop(1)
    unittest.main()
