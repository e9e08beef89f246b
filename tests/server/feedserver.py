#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""A web server on 127.0.0.1 for tests. The first part of a path selects the behaviour.

usage: feedserver.py FOLDER [CERTIFICATE]

The server prints its port, and then a line for each request: method, path and status. It ends when its
standard input is closed. /files/ serves FOLDER with ETag and Last-Modified. The server uses TLS if CERTIFICATE
is given, a file with a key and a certificate.
"""
import email.utils
import gzip
import hashlib
import http.server
import os
import re
import ssl
import sys
import threading
import time
import urllib.parse
import zlib

FEED = b"""<rss version="2.0"><channel><title>%s</title><link>http://127.0.0.1/</link>
<item><title>One</title><link>one.html</link></item></channel></rss>"""
PATIENCE = 30


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    server_version = "feedserver"

    def do_GET(self):
        url = urllib.parse.urlsplit(self.path)
        first, _, rest = url.path.lstrip("/").partition("/")
        try:
            getattr(self, "serve_" + re.sub(r"[-.]", "_", first), self.serve_nothing)(rest, url.query)
        except (BrokenPipeError, ConnectionResetError):
            pass

    def log_request(self, code="-", size="-"):
        # One write for each line, because other threads write at the same time.
        sys.stdout.write("%s %s %d\n" % (self.command, self.path, int(code)))
        sys.stdout.flush()

    def log_message(self, *arguments):
        pass

    def answer(self, body, status=200, content_type="application/rss+xml", headers=()):
        self.send_response(status)
        if content_type:
            self.send_header("Content-Type", content_type)
        self.send_header("Content-Length", str(len(body)))
        for name, value in headers:
            self.send_header(name, value)
        self.end_headers()
        self.wfile.write(body)

    def begin(self, headers=()):
        """Sends the headers of an answer that ends when the connection is closed."""
        self.send_response(200)
        self.send_header("Content-Type", "application/rss+xml")
        self.send_header("Connection", "close")
        for name, value in headers:
            self.send_header(name, value)
        self.end_headers()
        self.close_connection = True

    def serve_nothing(self, rest, query):
        self.answer(b"<html>Not here</html>", 404, "text/html")

    def serve_files(self, rest, query):
        """A file, or 304 if the ETag or date of the request is up to date."""
        path = os.path.join(self.server.folder, urllib.parse.unquote(rest))
        if not os.path.isfile(path):
            return self.serve_nothing(rest, query)
        with open(path, "rb") as file:
            body = file.read()
        tag = '"%s"' % hashlib.sha1(body).hexdigest()
        date = email.utils.formatdate(os.path.getmtime(path), usegmt=True)
        headers = []
        if query != "date":
            headers.append(("ETag", tag))
        if query != "tag":
            headers.append(("Last-Modified", date))
        known = tag if query != "date" else date
        if self.headers.get("If-None-Match" if query != "date" else "If-Modified-Since") == known:
            self.send_response(304)
            for name, value in headers:
                self.send_header(name, value)
            self.end_headers()
            return
        content_type = {".mp3": "audio/mpeg", ".xml": "application/rss+xml", ".html": "text/html"}.get(
            os.path.splitext(path)[1], "application/octet-stream")
        self.answer(body, content_type=content_type, headers=headers)

    def serve_favicon_ico(self, rest, query):
        self.serve_files("favicon.ico", query)

    def serve_ranged(self, rest, query):
        """/ranged/NAME?cut=1000&...: a file of the folder, or a part of it.

        cut: the first answer to this path ends after so many bytes. hold: it then stays open. pause: half of it
        comes so many seconds later. The other words say how the server differs from one that does all as it
        should.
        """
        path = os.path.join(self.server.folder, rest)
        if not os.path.isfile(path):
            return self.serve_nothing(rest, query)
        with open(path, "rb") as file:
            body = file.read()
        options = dict(urllib.parse.parse_qsl(query, keep_blank_values=True))
        if self.headers.get("Accept-Encoding") != "identity":
            return self.answer(b"no", 406, "text/plain")
        tag = ("W/" if "weak" in options else "") + '"%s"' % hashlib.sha1(body).hexdigest()
        age = -3600 if "new" in options else 3600
        date = email.utils.formatdate(self.server.started - age, usegmt=True)
        if "dated" in options and self.path in self.server.cut_paths:
            date = email.utils.formatdate(self.server.started - 1800, usegmt=True)
        validator = ("ETag", tag) if not {"date", "new"} & set(options) else ("Last-Modified", date)
        headers = [validator] if "plain" not in options else []
        wanted = re.match(r"bytes=(\d+)-$", self.headers.get("Range", ""))
        isSame = self.headers.get("If-Range") == validator[1] or "stubborn" in options
        if not wanted or not isSame or "ignore" in options:
            return self.send_part(body, 0, 200, headers, options)
        start = int(wanted.group(1))
        if "refuse" in options:
            return self.answer(b"", 416, None, [("Content-Range", "bytes */%d" % len(body))])
        if "untagged" in options:
            headers = []
        if "coded" in options:
            headers.append(("Content-Encoding", "gzip"))
        named = (start + int(options.get("start", 0)), len(body) - 1 - int(options.get("end", 0)),
                 len(body) + int(options.get("total", 0)))
        if "unnamed" not in options:
            headers.append(("Content-Range", "bytes %d-%d/%d" % named))
        self.send_part(body, start, 206, headers, options)

    def send_part(self, body, start, status, headers, options):
        """Sends what follows \a start. The size of the answer is not announced if it is a wrong one."""
        piece = body[start:]
        wrong = status == 206 and {"more", "less"} & set(options)
        self.send_response(status)
        self.send_header("Content-Type", "audio/mpeg")
        for name, value in headers:
            self.send_header(name, value)
        if wrong:
            self.send_header("Connection", "close")
            self.close_connection = True
            piece = piece + b"more" if "more" in options else piece[:-4]
        else:
            self.send_header("Content-Length", str(len(piece)))
        self.end_headers()
        with self.server.lock:
            is_first = self.path not in self.server.cut_paths
            self.server.cut_paths.add(self.path)
        if is_first and "cut" in options:
            self.wfile.write(piece[:int(options["cut"])])
            self.wfile.flush()
            self.close_connection = True
            if "hold" in options:
                self.server.ending.wait(PATIENCE)
        elif is_first and "pause" in options:
            self.wfile.write(piece[:len(piece) // 2])
            self.server.ending.wait(float(options["pause"]))
            self.wfile.write(piece[len(piece) // 2:])
        else:
            self.wfile.write(piece)

    def serve_later(self, rest, query):
        """The same as /files/, after a second."""
        self.log_request(0)
        self.server.ending.wait(1)
        self.serve_files(rest, query)

    def serve_crowd(self, rest, query):
        """A feed, after a second. Its title is the largest number of these requests at a time."""
        with self.server.lock:
            self.server.crowd += 1
            self.server.largest_crowd = max(self.server.crowd, self.server.largest_crowd)
        self.server.ending.wait(1)
        with self.server.lock:
            self.server.crowd -= 1
            size = self.server.largest_crowd
        self.answer(FEED % str(size).encode())

    def serve_tagged(self, rest, query):
        """/tagged/500: a feed with an ETag of 500 characters."""
        self.answer(FEED % b"Tagged", headers=[("ETag", '"%s"' % ("x" * (int(rest) - 2)))])

    def serve_feed(self, rest, query):
        self.answer(FEED % (rest or "Feed").encode())

    def serve_status(self, rest, query):
        status = int(rest)
        self.answer(b"" if status in (204, 304) else b"no", status, "text/plain")

    def serve_with(self, rest, query):
        """/with/429?Retry-After:%2060: an answer of this status with this header; a feed if it is 200."""
        name, _, value = urllib.parse.unquote(query).partition(": ")
        status = int(rest.partition("/")[0])
        self.answer(FEED % b"With" if status == 200 else b"no", status, headers=[(name, value)])

    def serve_type(self, rest, query):
        """/type?text/html: a feed with this content type. /type/NAME?text/html: a file of the folder with it."""
        body = FEED % b"Typed"
        if rest:
            with open(os.path.join(self.server.folder, rest), "rb") as file:
                body = file.read()
        self.answer(body, content_type=urllib.parse.unquote(query) or None)

    def serve_linked(self, rest, query):
        """/linked?<feed.xml>: a web page with this Link: header."""
        self.answer(b"<!DOCTYPE html><p>Page", content_type="text/html",
                    headers=[("Link", urllib.parse.unquote(query))])

    def serve_redirect(self, rest, query):
        """/redirect/301?target: a redirect with this status to this target."""
        self.answer(b"", int(rest), None, [("Location", urllib.parse.unquote(query))])

    def serve_turn(self, rest, query):
        """/turn/NAME?first&second: a redirect to the first target, and then to the second one."""
        with self.server.lock:
            target = query.split("&")[self.path in self.server.cut_paths]
            self.server.cut_paths.add(self.path)
        self.serve_redirect("302", target)

    def serve_loop(self, rest, query):
        self.answer(b"", 302, None, [("Location", "/loop")])

    def serve_empty(self, rest, query):
        self.answer(b"")

    def serve_silent(self, rest, query):
        self.log_request(0)
        self.server.ending.wait(PATIENCE)
        self.close_connection = True

    def serve_drip(self, rest, query):
        """Sends bytes so slowly that the download takes too long, but never pauses for the timeout."""
        self.begin([("Content-Length", "1000000")])
        self.send_slowly(b" ", 0.05)

    def serve_stalled(self, rest, query):
        """Sends the beginning of a body and then nothing."""
        self.begin([("Content-Length", "1000000")])
        self.wfile.write(b"<rss>" * 1000)
        self.server.ending.wait(PATIENCE)

    def serve_endless(self, rest, query):
        self.begin()
        self.send_slowly(b" " * 65536, 0)

    def send_slowly(self, piece, pause):
        while not self.server.ending.wait(pause):
            self.wfile.write(piece)

    def serve_truncated(self, rest, query):
        body = FEED % b"Truncated"
        self.begin([("Content-Length", str(len(body) + 1000))])
        self.wfile.write(body)

    def serve_headers(self, rest, query):
        """/headers/NUMBER/SIZE: a feed with so many headers, each with a value of this size."""
        number, _, size = rest.partition("/")
        header = b"X-Header-%d: " + b"x" * int(size or 1) + b"\r\n"
        self.send_answer_start(b"".join(header % i for i in range(int(number))))
        self.wfile.write(b"\r\n" + FEED % b"Headers")

    def serve_endless_headers(self, rest, query):
        self.send_answer_start(b"")
        self.send_slowly(b"X-Header: x\r\n" * 1000, 0)

    def serve_endless_line(self, rest, query):
        self.send_answer_start(b"X-Header: ")
        self.send_slowly(b"x" * 65536, 0)

    def serve_endless_continue(self, rest, query):
        self.close_connection = True
        self.send_slowly(b"HTTP/1.1 100 Continue\r\n\r\n" * 100, 0)

    def serve_trailers(self, rest, query):
        """A feed in one chunk, and then headers without end."""
        body = FEED % b"Trailers"
        self.send_answer_start(b"Transfer-Encoding: chunked\r\n\r\n%x\r\n" % len(body) + body + b"\r\n0\r\n")
        self.send_slowly(b"X-Header: x\r\n" * 1000, 0)

    def serve_phrase(self, rest, query):
        """/phrase/SIZE: a refusal with a reason of this size."""
        self.close_connection = True
        self.wfile.write(b"HTTP/1.1 404 " + b"x" * int(rest) + b"\r\nContent-Length: 0\r\n\r\n")

    def serve_no_http(self, rest, query):
        self.close_connection = True
        self.wfile.write(b"220 ready\r\n" * 10)

    def send_answer_start(self, headers):
        self.log_request(200)
        self.close_connection = True
        self.wfile.write(b"HTTP/1.1 200 OK\r\nConnection: close\r\n" + headers)

    def serve_locked(self, rest, query):
        """A feed for Ann, whose password is "open sesame"."""
        if self.headers.get("Authorization") != "Basic QW5uOm9wZW4gc2VzYW1l":
            return self.answer(b"no", 401, "text/plain", [("WWW-Authenticate", 'Basic realm="x"')])
        self.answer(FEED % b"Locked")

    def serve_moved(self, rest, query):
        """/moved?target: a feed with an ETag, and a redirect to this target for those who know the ETag."""
        if self.headers.get("If-None-Match"):
            return self.serve_redirect("302", query)
        self.answer(FEED % b"Moved", headers=[("ETag", '"moved"')])

    def serve_conditional(self, rest, query):
        """A feed with an ETag, or 304 for those who know any ETag."""
        if self.headers.get("If-None-Match"):
            return self.answer(b"", 304, None)
        self.answer(FEED % b"Conditional", headers=[("ETag", '"conditional"')])

    def serve_huge(self, rest, query):
        """Announces a much larger size than it sends."""
        self.begin([("Content-Length", str(10 ** 12))])
        self.wfile.write(b"<rss>")

    def serve_gzip(self, rest, query):
        if "gzip" not in self.headers.get("Accept-Encoding", ""):
            return self.answer(b"no gzip was asked for", 406, "text/plain")
        self.answer(gzip.compress(FEED % b"Compressed"), headers=[("Content-Encoding", "gzip")])

    def serve_bomb(self, rest, query):
        """Sends 4 GiB of blanks, compressed to 4 MiB."""
        self.begin([("Content-Encoding", "gzip")])
        compressor = zlib.compressobj(9, zlib.DEFLATED, 31)
        blanks = b" " * (1 << 20)
        for _ in range(4096):
            self.wfile.write(compressor.compress(blanks))
        self.wfile.write(compressor.flush())

    def serve_bytes(self, rest, query):
        """/bytes/1000/any/name?audio/ogg: 1000 bytes with this content type."""
        size = int(rest.partition("/")[0])
        self.answer(b"x" * size, content_type=urllib.parse.unquote(query) or "audio/mpeg")

    def serve_unsized(self, rest, query):
        """/unsized/1000: 1000 bytes without Content-Length."""
        self.begin()
        self.wfile.write(b"x" * int(rest))

    def serve_agent(self, rest, query):
        """A feed whose title has the headers of the request."""
        names = ("User-Agent", "Cookie", "Referer", "Accept-Language")
        title = " ".join("%s=%s" % (name, self.headers.get(name)) for name in names)
        self.answer(FEED % title.encode(), headers=[("Set-Cookie", "who=you")])


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def __init__(self, folder, certificate):
        super().__init__(("127.0.0.1", 0), Handler)
        self.folder = folder
        self.ending = threading.Event()
        self.lock = threading.Lock()
        self.crowd = self.largest_crowd = 0
        self.started = time.time()
        self.cut_paths = set()
        if certificate:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(certificate)
            self.socket = context.wrap_socket(self.socket, server_side=True)

    def handle_error(self, request, client_address):
        pass


def main():
    server = Server(sys.argv[1], sys.argv[2] if len(sys.argv) > 2 else None)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    print(server.server_address[1], flush=True)
    sys.stdin.read()
    server.ending.set()


main()
