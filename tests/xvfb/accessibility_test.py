#!/usr/bin/python3
"""The real program as a screen reader reads it over AT-SPI.

Run under an X server and a private session bus:
    xvfb-run -a -s -noreset dbus-run-session -- /usr/bin/python3 accessibility_test.py PROGRAM ASSETS
It starts the program with the in-process engine simulator, logs on through the login dialog,
walks the main window and the locations drawer, and makes a call with the connect button's
press action, reading the lights and the status line as the call goes and the performance
panel's charts while it is up.
"""
import os
import re
import subprocess
import sys
import tempfile
import time
import unittest

import pyatspi
from gi.repository import GLib

PROGRAM, ASSETS = sys.argv[1], sys.argv[2]
LIGHTS = ["Modem", "Dialing", "ISP", "ISP login", "Tunnel", "Tunnel login"]
# Each chart of the performance panel: its name, and its figures in words.
RATE = r"[\d,.]+ [KM]b/s"
CHARTS = {
    r"Speed: [\d,]* bps": ", ".join(f"{link} Bytes {way}/second: {RATE}"
                                   for link in ("ISP", "VPN") for way in ("Receive", "Transmit")),
    r"Round Trip \(sec\)": r"Round Trip Delay: [\d,.]+ sec",
    r"Packet Loss": r"Packet Loss: [\d,]+",
}
# Names a person should never hear: the forms' own names of controls.
CONTROL_NAME = re.compile(r"^(img|btn|lbl|txt|cmbo|chk|cmd|Image\d|Label\d|frm)[A-Za-z0-9(]")


def wait_for(what, timeout=30.0, step=0.1):
    """Polls until what() gives something true; returns it, or None at the time limit."""
    end = time.monotonic() + timeout
    while time.monotonic() < end:
        while GLib.MainContext.default().iteration(False):
            pass  # the events that came meanwhile
        try:
            found = what()
        except (LookupError, RuntimeError):  # a node that went while it was read
            found = None
        if found:
            return found
        time.sleep(step)
    return None


def listen(seconds):
    """Lets the events of the next seconds arrive."""
    wait_for(lambda: None, seconds)


def nodes(root):
    """Every node under root, depth first, the ones that stopped answering left out."""
    stack = [root]
    while stack:
        node = stack.pop()
        if node is None:
            continue
        yield node
        try:
            stack.extend(reversed([node.getChildAtIndex(i) for i in range(node.childCount)]))
        except RuntimeError:
            continue


def find(root, role=None, name=None):
    for node in nodes(root):
        if (role is None or node.getRoleName() == role) and (name is None or node.name == name):
            return node
    return None


def combos(root):
    return [node for node in nodes(root) if node.getRoleName() == "combo box"]


def labelled_by(node):
    """The name of the label a reader speaks a node by (a combo box's name is its text)."""
    for relation in node.getRelationSet():
        if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY:
            return relation.getTarget(0).name
    return None


def showing(node):
    return node.getState().contains(pyatspi.STATE_SHOWING)


def checked(node):
    return node.getState().contains(pyatspi.STATE_CHECKED)


def key(keysym):
    pyatspi.Registry.generateKeyboardEvent(keysym, None, pyatspi.KEY_SYM)


TAB, SPACE, F6 = 0xFF09, 0x20, 0xFFC3


def window_of(node):
    while node.parent is not None and node.parent.getRoleName() != "application":
        node = node.parent
    return node


def press(node):
    action = node.queryAction()
    names = [action.getName(i) for i in range(action.nActions)]
    action.doAction(names.index("Press"))


class Listener:
    """Events of one kind as a screen reader hears them, from now until stop()."""

    def __init__(self, event):
        self.event, self.heard = event, []
        pyatspi.Registry.registerEventListener(self._heard, event)

    def _heard(self, event):
        try:
            self.hear(event)
        except RuntimeError:  # a node that went meanwhile
            pass

    def stop(self):
        pyatspi.Registry.deregisterEventListener(self._heard, self.event)


class FromRole(Listener):
    """One kind of event from nodes of one role: what `take` makes of each (None: not heard)."""

    def __init__(self, event, role, take=lambda event: event.source.name):
        super().__init__(event)
        self.role, self.take = role, take

    def hear(self, event):
        if event.source.getRoleName() == self.role:
            what = self.take(event)
            if what is not None:
                self.heard.append(what)


def status_line_changes():
    """The status line's changes, as a reader is told them."""
    return FromRole("object:property-change:accessible-name", "status bar")


def chart_descriptions():
    """The charts whose description changed, one entry a change, as a reader is told them."""
    return FromRole("object:property-change:accessible-description", "chart")


def password_echo():
    """What a password field tells a reader of the text typed into it."""
    return FromRole("object:text-changed", "password text", lambda event: event.any_data)


def shown_notifications():
    """Notifications as they appear: a reader speaks each one, wherever the focus is."""
    return FromRole("object:state-changed:showing", "notification",
                    lambda event: event.source.name if event.detail1 else None)


class Focus(Listener):
    """Where the keyboard focus went, in order: a combo box (or its editor) by its label,
    anything else by its name, and the window of each."""

    def __init__(self):
        super().__init__("object:state-changed:focused")
        self.where = []

    def hear(self, event):
        node = event.source
        if not event.detail1:
            return
        if node.getRoleName() == "text" and node.parent.getRoleName() == "combo box":
            node = node.parent
        spoken = labelled_by(node) if node.getRoleName() == "combo box" else node.name
        if not self.heard or self.heard[-1] != spoken:  # a combo and its editor: one stop
            self.heard.append(spoken)
            self.where.append(window_of(node).name)


class Program:
    """The program in a private home, on the simulator, with a screen reader's bus on."""

    def __init__(self):
        self.home = tempfile.mkdtemp(prefix="kw-a11y-")
        env = dict(os.environ)
        env.update({
            "XDG_CONFIG_HOME": os.path.join(self.home, "config"),
            "XDG_DATA_HOME": os.path.join(self.home, "data"),
            "XDG_RUNTIME_DIR": os.path.join(self.home, "run"),
            "TMPDIR": os.path.join(self.home, "tmp"),
            "KESTRELWAY_ASSETS": ASSETS,
            "QT_QPA_PLATFORM": "xcb",
            "QT_ACCESSIBILITY": "1",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
        })
        for folder in ("config", "data/Ostvarra/Kestrelway", "run", "tmp"):
            os.makedirs(os.path.join(self.home, folder), mode=0o700, exist_ok=True)
        # The engine linked into the program, whatever the machine's default engine is.
        with open(os.path.join(self.home, "data/Ostvarra/Kestrelway/system.reg"), "w") as hive:
            hive.write('WINE REGISTRY Version 2\n;; All keys relative to \\\\Machine\n\n'
                       '#arch=win64\n\n[Software\\\\Ostvarra] 1700000000\n'
                       '"Engine"="dravlink.sim"\n')
        self.log = open(os.path.join(self.home, "program.log"), "w+")
        self.process = subprocess.Popen([PROGRAM], env=env, stdout=self.log,
                                        stderr=subprocess.STDOUT)
        self.app = wait_for(self._find_app, timeout=60)
        if self.app in (None, "ended"):
            running = self.process.poll() is None
            self.log.seek(0)
            said = self.log.read()
            self.stop()
            raise RuntimeError("the program never appeared on the accessibility bus "
                               f"({'running' if running else 'ended'}): {said}")

    def _find_app(self):
        if self.process.poll() is not None:
            return "ended"
        desktop = pyatspi.Registry.getDesktop(0)
        for i in range(desktop.childCount):
            app = desktop.getChildAtIndex(i)
            if app is not None and (app.name or "").lower() == "kestrelway":
                return app
        return None

    def window(self, name, role=None, timeout=30):
        def shown():
            for i in range(self.app.childCount):
                w = self.app.getChildAtIndex(i)
                if w is not None and name in (None, w.name) and showing(w) and (
                        role is None or w.getRoleName() == role):
                    return w
            return None
        return wait_for(shown, timeout)

    def stop(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self.log.close()
        subprocess.run(["rm", "-rf", self.home], check=False)


class ScreenReaderTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.program = Program()

    @classmethod
    def tearDownClass(cls):
        cls.program.stop()

    def assertNoControlNames(self, window):
        for node in nodes(window):
            self.assertIsNone(CONTROL_NAME.match(node.name or ""),
                              f"a {node.getRoleName()} is named {node.name!r}")

    # The tests run in the order a person goes: log on, look round, open a drawer, call.
    def test_1_the_login_dialog(self):
        dialog = self.program.window(None, role="dialog", timeout=60)
        self.assertIsNotNone(dialog, "no login dialog")
        self.assertNoControlNames(dialog)
        user = find(dialog, "text", "User name")
        password = find(dialog, "password text", "Password")
        ok = find(dialog, "push button", "OK")
        for node in (user, password, ok, find(dialog, "push button", "Cancel")):
            self.assertIsNotNone(node)
        # What a reader types reaches the program: an empty user name is refused.
        user.queryEditableText().setTextContents("")
        press(ok)
        refusal = self.program.window(None, role="alert")
        self.assertIsNotNone(refusal, "an empty user name was taken")
        self.assertIsNotNone(find(refusal, None, "Invalid User Name, try again!"))
        press(find(refusal, "push button", "OK"))
        self.assertTrue(wait_for(lambda: not showing(refusal) or None, 30), "the box stays")
        user.queryEditableText().setTextContents("tester")
        # Typed from the keyboard, the password reaches a reader as its mask only.
        echo = password_echo()
        self.addCleanup(echo.stop)
        password.queryComponent().grabFocus()
        self.assertTrue(wait_for(lambda: password.getState().contains(pyatspi.STATE_FOCUSED), 10))
        for letter in "secret":
            key(ord(letter))
        self.assertTrue(wait_for(lambda: len(echo.heard) >= 6, 10), echo.heard)
        self.assertFalse([said for said in echo.heard if set(said) & set("secret")], echo.heard)
        press(ok)  # any password will do for the simulator
        self.assertTrue(wait_for(lambda: not showing(dialog) or None, 30), "the dialog stays")

    def main_window(self):
        window = self.program.window("Kestrelway", timeout=60)
        self.assertIsNotNone(window, "no main window")
        return window

    def lights(self, window):
        return {name: find(window, None, name) for name in LIGHTS}

    def test_2_the_main_window_at_rest(self):
        window = self.main_window()
        self.assertNoControlNames(window)
        for name, light in self.lights(window).items():
            self.assertIsNotNone(light, f"no light {name}")
            self.assertEqual(light.getRoleName(), "check box", name)
            self.assertFalse(checked(light), f"{name} is lit at rest")
            self.assertEqual(light.description, "not lit")
        connect = find(window, "push button", "Connect")
        self.assertIsNotNone(connect, "no Connect push button")
        self.assertTrue(connect.getState().contains(pyatspi.STATE_FOCUSABLE))
        for drawer in ("Locations drawer", "Dial list drawer", "Minimize", "Help", "Close"):
            button = find(window, "push button", drawer)
            self.assertIsNotNone(button, drawer)
            self.assertTrue(button.getState().contains(pyatspi.STATE_FOCUSABLE), drawer)
        for combo, label in zip(combos(window), ("From", "To")):
            self.assertEqual(labelled_by(combo), label)
        self.assertIsNotNone(find(window, "status bar"))

    def test_3_the_main_window_from_the_keyboard(self):
        window = self.main_window()
        focus = Focus()
        self.addCleanup(focus.stop)
        # A window manager would give the window the keyboard; the bare X server needs a click,
        # on the status line, where it does nothing.
        status = find(window, "status bar").queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        pyatspi.Registry.generateMouseEvent(status.x + 4, status.y + 4, "b1c")
        start = find(window, "push button", "Minimize")
        actions = start.queryAction()
        actions.doAction([actions.getName(i) for i in range(actions.nActions)].index("SetFocus"))
        self.assertTrue(wait_for(lambda: focus.heard[-1:] == ["Minimize"], 10), focus.heard)
        order = ["Help", "Close", "From", "Locations drawer", "To", "Dial list drawer",
                 "Connect", "Prescriber output drawer", "More settings drawer", "Minimize",
                 "Help", "Close", "From", "Locations drawer"]
        for expected in order:
            heard = len(focus.heard)
            key(TAB)
            self.assertTrue(wait_for(lambda: len(focus.heard) > heard, 10), f"Tab to {expected}")
            self.assertEqual(focus.heard[-1], expected)
        key(SPACE)
        drawer = self.program.window("Locations")
        self.assertIsNotNone(drawer, "Space did not open the drawer")
        key(SPACE)
        self.assertTrue(wait_for(lambda: not showing(drawer) or None, 30), "the drawer stays")

    def test_4_the_locations_drawer(self):
        window = self.main_window()
        press(find(window, "push button", "Locations drawer"))
        drawer = self.program.window("Locations")
        self.assertIsNotNone(drawer, "the drawer did not open")
        self.assertNoControlNames(drawer)
        # F6 takes the keyboard from window to window; Tab then goes on inside the drawer.
        focus = Focus()
        self.addCleanup(focus.stop)
        for _ in range(3):
            heard = len(focus.heard)
            key(F6)
            self.assertTrue(wait_for(lambda: len(focus.heard) > heard, 10), "F6 went nowhere")
            if focus.where[-1] == "Locations":
                break
        self.assertEqual(focus.where[-1], "Locations", focus.heard)
        heard = len(focus.heard)
        key(TAB)
        self.assertTrue(wait_for(lambda: len(focus.heard) > heard, 10), "Tab went nowhere")
        self.assertEqual(focus.where[-1], "Locations")
        self.assertEqual([labelled_by(c) for c in combos(drawer)][:2],
                         ["Location:", "Country/Region:"])
        for name in ("Area code", "Your phone number"):
            self.assertIsNotNone(find(drawer, "text", name), name)
        for name in ("Disable Call Waiting", "Manual Dial"):
            self.assertIsNotNone(find(drawer, "check box", name), name)
        self.assertIsNotNone(find(drawer, "push button", "Cancel"))
        press(find(window, "push button", "Locations drawer"))
        self.assertTrue(wait_for(lambda: not showing(drawer) or None, 30), "the drawer stays")

    def test_5_a_call_read_by_its_lights_and_status(self):
        window = self.main_window()
        connect = find(window, "push button", "Connect")
        self.assertTrue(wait_for(lambda: connect.getState().contains(pyatspi.STATE_ENABLED), 30),
                        "Connect never enabled")
        lights = self.lights(window)
        seen = set()
        announcements = status_line_changes()
        self.addCleanup(announcements.stop)
        notifications = shown_notifications()
        self.addCleanup(notifications.stop)
        press(connect)

        def all_lit():
            seen.update(name for name, light in lights.items() if checked(light))
            return len(seen) == len(LIGHTS) and all(checked(l) for l in lights.values())
        self.assertTrue(wait_for(all_lit, 90), f"lit during the call: {sorted(seen)}")
        for light in lights.values():
            self.assertEqual(light.description, "lit")
        status = find(window, "status bar")
        self.assertTrue(wait_for(lambda: "connected" in (status.name or "").lower(), 30),
                        f"status after connecting: {status.name!r}")
        self.assertIn(status.name, announcements.heard, "the status line was not announced")
        self.assertGreater(len(set(announcements.heard)), 2, "the call's stages were not heard")
        # Readers speak a status bar's new name only while it has the focus: each status also
        # appears as a notification, which they speak at once.
        self.assertTrue(wait_for(lambda: status.name in notifications.heard, 10),
                        f"not notified: {status.name!r} (heard {notifications.heard})")

    def test_6_the_charts_read_during_the_call(self):
        panel = self.program.window("Performance")
        self.assertIsNotNone(panel, "no performance panel")
        self.assertNoControlNames(panel)
        charts = {}
        for pattern in CHARTS:
            charts[pattern] = wait_for(lambda: next(
                (c for c in nodes(panel) if c.getRoleName() == "chart"
                 and re.fullmatch(pattern, c.name or "")), None), 30)
            self.assertIsNotNone(charts[pattern], f"no chart named like {pattern!r}")
        changes = chart_descriptions()
        self.addCleanup(changes.stop)
        started = time.monotonic()
        for name_pattern, said in CHARTS.items():
            chart = charts[name_pattern]
            self.assertTrue(wait_for(lambda: re.fullmatch(said, chart.description or ""), 30),
                            f"{chart.name}: {chart.description!r}")
        self.assertTrue(wait_for(lambda: len(changes.heard) >= 3, 30), "no figures were heard")
        listen(3)
        seconds = time.monotonic() - started
        for chart in charts.values():
            heard = [name for name in changes.heard if name == chart.name]
            # At most once a sample: the figures come once a second.
            self.assertLessEqual(len(heard), seconds + 2,
                                 f"{chart.name}: {len(heard)} times in {seconds:.0f} s")

    def test_7_hanging_up_puts_the_lights_out(self):
        window = self.main_window()
        lights = self.lights(window)
        disconnect = wait_for(lambda: find(window, "push button", "Disconnect"), 30)
        self.assertIsNotNone(disconnect, "the button does not offer to disconnect")
        press(disconnect)
        self.assertTrue(wait_for(lambda: not any(checked(l) for l in lights.values()), 60),
                        "the lights stay on after disconnecting")


if __name__ == "__main__":
    # pyatspi calls functions newer libatspi deprecates: not this program's warnings.
    result = unittest.main(argv=[sys.argv[0], "-v"], exit=False,
                           warnings="ignore").result
    sys.exit(0 if result.wasSuccessful() else 1)
