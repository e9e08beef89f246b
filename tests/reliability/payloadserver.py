# SPDX-License-Identifier: LGPL-2.1-or-later
"""A web server that puts a hostile text into every part of its feeds and headers."""
import http.server
import json
import threading
from xml.sax.saxutils import escape, quoteattr

# Where an item of a feed has the text. Each item has a title and an identifier of its own unless it says so.
RSS_ITEMS = {
    "title": "<title>%s</title>",
    "link": "<title>link</title><link>%s</link>",
    "guid": '<title>guid</title><guid isPermaLink="false">%s</guid>',
    "permalink": "<title>permalink</title><guid>%s</guid>",
    "text": "<title>text</title><description>%s</description>",
    "author": '<title>author</title><dc:creator xmlns:dc="http://purl.org/dc/elements/1.1/">%s</dc:creator>',
    "category": "<title>category</title><category>%s</category>",
    "date": "<title>date</title><pubDate>%s</pubDate>",
    "address": '<title>address</title><enclosure url=%q length="1" type="audio/ogg"/>',
    "name": '<title>name</title><enclosure url="http://HOST/file/%s" length="1" type="audio/ogg"/>',
    "type": '<title>type</title><enclosure url="http://HOST/file/type" length=%q type=%q/>',
    "header": '<title>header</title><enclosure url="http://HOST/file" length="1" type="audio/ogg"/>',
}
JSON_ITEMS = {
    "title": {}, "id": {"title": "id"}, "url": {"title": "url"}, "content_html": {"title": "html"},
    "content_text": {"title": "text"}, "summary": {"title": "summary", "content_text": "x"},
    "image": {"title": "image"}, "language": {"title": "language"}, "date_published": {"title": "date"},
}


def as_bytes(text):
    return text.encode("utf-8", "surrogatepass")


def rss(text, host):
    items = []
    for route, item in RSS_ITEMS.items():
        filled = item.replace("HOST", host).replace("%q", quoteattr(text)).replace("%s", escape(text, {'"': "&quot;"}))
        identity = "" if "guid" in item else f"<guid isPermaLink='false'>{route}</guid>"
        items.append(f"<item>{identity}{filled}</item>")
    shown = escape(text)
    return as_bytes(f"<rss version='2.0'><channel><title>rss {shown}</title><link>{shown}</link><language>{shown}"
                    f"</language><description>{shown}</description>{''.join(items)}</channel></rss>")


def json_feed(text):
    items = [{"id": route, **item, route: text} for route, item in JSON_ITEMS.items()]
    items.append({"id": "lists", "title": "lists", "authors": [{"name": text, "url": text}], "tags": [text, text],
                  "attachments": [{"url": text, "mime_type": text, "title": text}]})
    return json.dumps({"version": "https://jsonfeed.org/version/1.1", "title": f"json {text}", "items": items,
                       "home_page_url": text, "feed_url": text, "icon": text, "description": text}).encode()


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        text = self.server.text
        path = self.path.split("?")[0]
        if path in ("/rss", "/json"):
            body = rss(text, self.headers["Host"]) if path == "/rss" else json_feed(text)
            self.answer("200 OK", [("ETag", text), ("Last-Modified", text), ("Link", text)], body)
        elif path.startswith("/file"):
            headers = [("Content-Type", text), ("Content-Disposition", f'attachment; filename="{text}"')]
            self.answer("200 OK", headers, b"x" * 100)
        elif path == "/redirect":
            self.answer("302 Found", [("Location", text)], b"")
        elif path == "/redirected":
            self.answer("301 Moved", [("Location", f"/rss?{text}")], b"")
        else:
            self.answer("404 Not Found", [], b"")

    def answer(self, status, headers, body):
        """Sends the headers as they are, also what cannot be in headers."""
        lines = [f"HTTP/1.0 {status}", f"Content-Length: {len(body)}"]
        lines += [f"{name}: {value}" for name, value in headers]
        self.wfile.write(as_bytes("\r\n".join(lines)) + b"\r\n\r\n" + body)

    def log_message(self, *arguments):
        pass


class PayloadServer(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def __init__(self):
        super().__init__(("127.0.0.1", 0), Handler)
        self.text = ""
        self.address = f"http://127.0.0.1:{self.server_address[1]}"
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def handle_error(self, request, client_address):
        pass
