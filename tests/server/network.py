#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""network.py ADDRESS PORT: the network between a workstation and the server that listens at ADDRESS on port
5432.

Whoever connects to PORT is connected to the server, as long as this process runs: stopped (kill -STOP) it
is a network in which nothing arrives any more and nothing is refused either.
"""
import socket
import sys
import threading


def pass_on(source, target):
    try:
        while data := source.recv(65536):
            target.sendall(data)
    except OSError:
        pass
    for end in (source, target):
        try:
            end.shutdown(socket.SHUT_RDWR)
        except OSError:
            pass


address, port = sys.argv[1], int(sys.argv[2])
with socket.create_server((address, port)) as listening:
    print("ready", flush=True)
    while True:
        workstation, _ = listening.accept()
        try:
            server = socket.create_connection((address, 5432))
        except OSError:
            workstation.close()
            continue
        for ends in ((workstation, server), (server, workstation)):
            threading.Thread(target=pass_on, args=ends, daemon=True).start()
