"""An SMTP server that delivers each mail once: sink.py FOLDER [PORT]. It stands for your mail server.

FOLDER/journal has a line for each mail that it took: when, Message-ID, size, "delivered" or "duplicate".
A mail whose Message-ID is in the journal already is taken and dropped. The first mails are kept in FOLDER/mails.
Without PORT it takes a free one, and the same one each time; FOLDER/port names it.
FOLDER/mood, if it is there, holds what is wrong with the server today (see misbehave).
"""
import asyncio, pathlib, re, sys, time
from aiosmtpd.smtp import SMTP

KEPT = 20
folder = pathlib.Path(sys.argv[1])


class Sink:
    def __init__(self):
        self.journal = open(folder / "journal", "a+", buffering=1)
        self.journal.seek(0)
        self.taken = {line.split()[1] for line in self.journal}
        (folder / "mails").mkdir(exist_ok=True)

    async def handle_MAIL(self, server, session, envelope, address, options):
        if mood() == "refuse":
            return "451 4.3.2 Not now, please come again later"
        envelope.mail_from = address
        return "250 OK"

    async def handle_DATA(self, server, session, envelope):
        key = re.search(rb"(?im)^Message-ID:\s*(\S+)", envelope.content)[1].decode()
        new = key not in self.taken
        self.taken.add(key)
        self.journal.write(f"{time.time():.3f} {key} {len(envelope.content)} {'delivered' if new else 'duplicate'}\n")
        if new and len(self.taken) <= KEPT:
            (folder / "mails" / f"{len(self.taken):02}.eml").write_bytes(envelope.content)
        await misbehave(server, new)
        return "250 2.0.0 OK"


def mood():
    file = folder / "mood"
    return file.read_text().strip() if file.exists() else ""


async def misbehave(server, new):
    """A mail is taken, and before its sender is told so, the line breaks or nothing happens for a while."""
    if new and mood() == "hangup":
        server.transport.abort()
    while new and mood() == "silent":
        await asyncio.sleep(0.05)


async def main():
    known = folder / "port"
    port = int(sys.argv[2]) if len(sys.argv) > 2 else int(known.read_text()) if known.exists() else 0
    sink = Sink()
    try:
        server = await asyncio.get_running_loop().create_server(lambda: SMTP(sink, enable_SMTPUTF8=True), "127.0.0.1", port)
    except OSError as error:
        sys.exit(f"The SMTP server cannot listen on port {port}: {error.strerror}.")
    known.write_text(str(server.sockets[0].getsockname()[1]))
    await server.serve_forever()


asyncio.run(main())
