"""Under which circumstances figures were found, for the pages that show them."""
import os
import platform
import subprocess


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()


def machine():
    gigabytes = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    compiler = output_of("g++", "-dumpfullversion")
    return f"{os.cpu_count()} cores, {gigabytes:.0f} GiB, {platform.machine()}, g++ {compiler}"


def commit(page):
    """What is checked out, whatever the page itself says by now."""
    changed = output_of("git", "status", "--porcelain", "--", ".", f":!{page}")
    return output_of("git", "rev-parse", "--short", "HEAD") + (" with changes" if changed else "")
