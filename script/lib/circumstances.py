"""The machine and the commit of a measurement, for the pages that show figures."""
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
    """The commit that is checked out; changes of the page itself don't count."""
    changed = output_of("git", "status", "--porcelain", "--", ".", f":!{page}")
    return output_of("git", "rev-parse", "--short", "HEAD") + (" with changes" if changed else "")
