#!/usr/bin/env python3
"""Runs a command with its standard input from a file and prints its peak
resident set size in KiB (the kernel's own high-water mark, via wait4)."""
import os
import sys

def main():
    if len(sys.argv) < 3:
        sys.exit("usage: peak_rss.py INPUT_FILE COMMAND [ARG...]")
    pid = os.fork()
    if pid == 0:
        fd = os.open(sys.argv[1], os.O_RDONLY)
        os.dup2(fd, 0)
        null = os.open(os.devnull, os.O_WRONLY)
        os.dup2(null, 1)
        os.execv(sys.argv[2], sys.argv[2:])
    _, status, usage = os.wait4(pid, 0)
    code = os.waitstatus_to_exitcode(status)
    if code != 0:
        sys.exit(f"command exited with {code}")
    print(usage.ru_maxrss)

main()
