# SPDX-License-Identifier: MIT
"""A tile server that records its requests."""
import http.server
import struct
import threading
import time
import zlib

from desktop import wait_for


def tile(red, green, blue):
    """Returns a single-coloured picture of 256 x 256 pixels as PNG."""
    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data
                + struct.pack(">I", zlib.crc32(kind + data)))

    rows = (b"\0" + bytes((red, green, blue)) * 256) * 256
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", 256, 256, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def colored(zoom, column, row):
    """Returns a tile in one of a few colours."""
    return tile(column * 40 % 256, row * 40 % 256, 160)


class TileServer:
    """Serves the tiles that `draw` returns, fresh for an hour, on loopback or another address."""

    def __init__(self, host="127.0.0.1", draw=colored):
        self.paths = []
        self.failures = []
        self.agents = set()
        server = self

        class Handler(http.server.BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def do_GET(self):
                server.paths.append(self.path)
                server.agents.add(self.headers["User-Agent"])
                try:
                    body = draw(*map(int, self.path.removesuffix(".png").split("/")[1:]))
                except Exception as error:  # any error is sent to the client that requested the tile
                    server.failures.append(error)
                    self.send_error(500)
                    return
                self.send_response(200)
                self.send_header("Content-Type", "image/png")
                self.send_header("Content-Length", str(len(body)))
                self.send_header("Cache-Control", "max-age=3600")
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *arguments):
                pass

        self.server = http.server.ThreadingHTTPServer((host, 0), Handler)
        self.server.daemon_threads = True
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    @property
    def address(self):
        host, port = self.server.server_address
        return f"http://{host}:{port}"

    def wait_until_idle(self):
        """Waits until tiles have been served, and no more have been requested for half a second."""
        seen = []  # (time, number of requests up to that time)

        def is_idle():
            now = time.monotonic()
            seen.append((now, len(self.paths)))
            return self.paths and any(
                then < now - 0.5 and count == len(self.paths) for then, count in seen)

        wait_for("the tiles", is_idle)
        if self.failures:
            raise self.failures[0]

    def stop(self):
        self.server.shutdown()
        self.server.server_close()
