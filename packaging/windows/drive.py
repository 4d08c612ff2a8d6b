#!/usr/bin/env python3
"""Drives the window under Wine by mouse and keys, as a user would, and checks what came of it.

Through the first example of the help: a design in a folder whose name is no ASCII is opened from the
command line, changed by menu, box, key and mouse, saved, compared with the native program's numbers,
reopened beside a second window, saved into the user's documents, printed to PDF and copied as a
picture; then the window is closed and what it keeps is looked at. DISPLAY names the screen.
"""
import argparse
import json
import os
import shutil
import subprocess
import sys
import time

PATIENCE = 60.0  # seconds for a window or a file
BLINKING = 4.0   # seconds after which what still changes is a text cursor


def run(*command, **options):
    return subprocess.run(command, capture_output=True, check=False, **options)


def wait_for(what, condition):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.2)
    raise SystemExit("no %s within %g s" % (what, PATIENCE))


def windows(title):
    out = run("xdotool", "search", "--onlyvisible", "--name", title).stdout.split()
    return [int(number) for number in out]


def wait_window(title, but=()):
    window = wait_for("window \"%s\"" % title,
                      lambda: next((w for w in windows(title) if w not in but), None))
    run("xdotool", "windowactivate", "--sync", str(window))
    settle()
    return window


def wait_gone(title):
    wait_for("end of \"%s\"" % title, lambda: not windows(title))
    settle()


def screen():
    return run("import", "-window", "root", "ppm:-").stdout


def settle():
    """Until the screen has stood still for a third of a second; a text cursor that blinks never does."""
    last, since = screen(), time.monotonic()
    end = since + BLINKING
    while time.monotonic() < end and time.monotonic() - since < 0.3:
        time.sleep(0.1)
        now = screen()
        if now != last:
            last, since = now, time.monotonic()


def key(*names):
    for name in names:
        run("xdotool", "key", "--delay", "60", name)
        time.sleep(0.15)
    settle()


def write(text):
    if text.isascii():
        run("xdotool", "type", "--delay", "40", text)
    else:  # letters that the keyboard does not have come from the clipboard
        subprocess.run(["xclip", "-selection", "clipboard"], input=text.encode(), check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        key("ctrl+v")
    settle()


def fill(mnemonic, text):
    """Reaches a box by its underlined letter and types over what it holds."""
    key("alt+" + mnemonic, "ctrl+a")
    write(text)


def size(window):
    words = run("xdotool", "getwindowgeometry", "--shell", str(window)).stdout.decode().split()
    values = dict(word.split("=") for word in words)
    return int(values["WIDTH"]), int(values["HEIGHT"])


def click(window, x, y):
    """Clicks at a part of the window's width and height."""
    width, height = size(window)
    run("xdotool", "mousemove", "--window", str(window), str(int(x * width)), str(int(y * height)))
    time.sleep(0.2)
    run("xdotool", "click", "1")
    settle()


class Driver:
    def __init__(self, options):
        self.options = options
        self.number = 0
        self.started = []

    def show(self, name):
        """Keeps a picture of the screen, which must show more than one colour."""
        self.number += 1
        path = os.path.join(self.options.shown, "%02d-%s.png" % (self.number, name))
        run("import", "-window", "root", path)
        colours = int(run("identify", "-format", "%k", path).stdout or 0)
        if colours < 20:
            raise SystemExit("%s shows nothing: %d colours" % (path, colours))

    def start(self, *arguments):
        command = [self.options.wine] if self.options.wine else []
        command += [os.path.join(self.options.program, self.options.name), *arguments]
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.started.append(process)
        return process

    def windows_name(self, path):
        if not self.options.wine:
            return path
        inside = os.path.relpath(path, os.path.join(os.environ["WINEPREFIX"], "drive_c"))
        return "C:\\" + inside.replace("/", "\\")

    def design(self, path):
        out = run(self.options.native, path, "--json", "-").stdout
        return json.loads(out)


def check(what, condition):
    if not condition:
        raise SystemExit(what)
    print(what + ": yes")


def the_example(driver, path):
    """A first filter: 5-pole Chebyshev low-pass, 30 MHz, 0.1 dB."""
    run(driver.options.native, "--set", "f0=100", "--save", path)
    process = driver.start(driver.windows_name(path))
    window = wait_window("first")
    driver.show("started")
    key("alt+4", "Down", "Return")          # Response, Chebyshev, the second of the menu
    fill("m", "30")
    fill("n", "5")
    fill("i", "0.1")
    key("Return")
    click(window, 0.35, 0.35)               # a click on the plot opens its menu
    driver.show("menu of the plot")
    key("Escape")
    driver.show("example")
    key("ctrl+s")
    wait_for("saved design", lambda: driver.design(path)["inputs"]["poles"] == 5)
    check_example(driver.design(path))
    return process, window


def check_example(design):
    inputs = design["inputs"]
    given = {"pass": "low-pass", "response": "chebyshev", "poles": 5, "f0": 30e6, "ripple": 0.1}
    check("the saved design is the one typed", all(inputs[k] == v for k, v in given.items()))
    values = [e["V1"] or e["V2"] for e in design["elements"]]
    wanted = [138e-12, 413e-9, 238e-12, 413e-9, 138e-12]
    check("its values are those of the help", len(values) == len(wanted) and
          all(abs(a / b - 1) < 0.005 for a, b in zip(values, wanted)))


def the_second_start(driver, path, first):
    """A second start with the design has a window of its own, and shows the same."""
    second = driver.start(driver.windows_name(path))
    window = wait_window("first", but=(first,))
    driver.show("second window")
    key("ctrl+q")
    check("the second window closes and leaves the first", second.wait(PATIENCE) == 0 and
          window not in windows("first"))
    run("xdotool", "windowactivate", "--sync", str(first))
    settle()


def into_documents(driver, documents):
    """Save As into the folder that the program has made there, and opened again from it."""
    folder = os.path.join(documents, "Tarnwick", "Ladderwise", "Files")
    check("the program has made its folder in the documents", os.path.isdir(folder))
    path = os.path.join(folder, "saved here.tk_ldfilt")
    key("ctrl+shift+s")
    wait_window("Save Design")
    driver.show("save as")
    key("ctrl+a")
    write(driver.windows_name(path))
    key("Return")
    wait_for("design in the documents", lambda: os.path.exists(path))
    wait_window("saved here")
    check_example(driver.design(path))
    key("ctrl+o")
    wait_window("Open Design")
    driver.show("open")
    write(driver.windows_name(os.path.join(driver.options.folder, "first.tk_ldfilt")))
    key("Return")
    wait_window("first")
    key("ctrl+o")
    wait_window("Open Design")
    write(driver.windows_name(path))
    key("Return")
    wait_window("saved here")


def the_picture(driver):
    """A copied picture is on the clipboard, large and of many colours."""
    key("alt+f", "y")
    settle()
    picture = os.path.join(driver.options.shown, "copied")

    def taken():
        for kind in ("image/png", "image/bmp"):
            bytes_ = run("xclip", "-selection", "clipboard", "-t", kind, "-o").stdout
            if len(bytes_) > 1000:
                with open(picture, "wb") as file:
                    file.write(bytes_)
                return True
        return False
    wait_for("picture on the clipboard", taken)
    width, height, colours = (int(word) for word in run(
        "identify", "-format", "%w %h %k", picture).stdout.split()[:3])
    run("convert", picture, picture + ".png")
    os.remove(picture)
    check("the copied picture is %d x %d with %d colours" % (width, height, colours),
          width > 400 and height > 300 and colours > 10)


def the_paper(driver, folder):
    """Printing shows a preview; without a printer its page becomes a PDF."""
    before = pdfs(folder)
    key("ctrl+p")
    preview = wait_window("Print - ")
    driver.show("preview")
    # The last of its buttons prints; Windows' style has them at the left.
    click(preview, 0.64 if driver.options.wine else 0.965, 0.03)
    driver.show("printing")
    key("Return")
    made = wait_for("PDF", lambda: pdfs(folder) - before)
    for window in windows("Print - "):
        run("xdotool", "windowactivate", "--sync", str(window))
        key("Escape")
    path = sorted(made)[0]
    wait_for("whole PDF", lambda: open(path, "rb").read().rstrip().endswith(b"%%EOF"))
    shutil.copy(path, os.path.join(driver.options.shown, "printed.pdf"))
    print("printed " + os.path.basename(path))


def pdfs(folder):
    found = set()
    for place, _, names in os.walk(folder):
        found |= {os.path.join(place, name) for name in names if name.endswith(".pdf")}
    return found


def the_end(driver, process):
    wait_window("saved here")
    key("alt+F4")
    check("the window closes clean", process.wait(PATIENCE) == 0)
    settings = os.path.join(driver.options.program, "Settings.txt")
    check("settings are kept", os.path.getsize(settings) > 0)
    recent = open(os.path.join(driver.options.program, "Settings.txt"), "rb").read()
    check("they name the last design", b"saved here" in recent)
    again = driver.start()
    wait_window("Ladderwise")
    driver.show("started again")
    key("alt+f")
    driver.show("recent files")
    key("Escape")
    key("alt+F4")
    check("the next start closes clean", again.wait(PATIENCE) == 0)


def main():
    parser = argparse.ArgumentParser()
    for name in ("wine", "program", "folder", "native", "shown"):
        parser.add_argument("--" + name, required=name != "wine")
    parser.add_argument("--name", default="ladderwise.exe")
    parser.add_argument("--documents")
    driver = Driver(parser.parse_args())
    options = driver.options
    documents = options.documents or wait_for("documents", lambda: next((
        os.path.join(place, "Documents") for place, folders, _ in os.walk(
            os.path.join(os.environ["WINEPREFIX"], "drive_c", "users"))
        if "Documents" in folders), None))
    manager = subprocess.Popen(["openbox"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        path = os.path.join(options.folder, "first.tk_ldfilt")
        process, window = the_example(driver, path)
        the_second_start(driver, path, window)
        into_documents(driver, documents)
        the_picture(driver)
        the_paper(driver, documents)
        the_end(driver, process)
    except SystemExit:
        driver.number = 98
        driver.show("where it stopped")
        raise
    finally:
        for process in driver.started:
            if process.poll() is None:
                process.kill()
        manager.kill()
        manager.wait()


if __name__ == "__main__":
    main()
