"""The program's windows as an assistive tool finds them, and real presses on what is found."""

from contextlib import contextmanager

import pyatspi
from gi.repository import GLib

from session import wait_until


class Views:
    """The windows of one program."""

    def __init__(self, session, program="Orvanta"):
        self.session = session
        self.program = program

    def application(self):
        for application in pyatspi.Registry.getDesktop(0):
            if application and application.name == self.program:
                return application
        return None

    def window(self, title):
        """The frame with this title, once it is there."""
        def find():
            application = self.application()
            if application is None:
                return None
            application.clearCache()
            for frame in application:
                if frame and frame.name == title:
                    return frame
            return None
        return wait_until(f"there is a window {title}", find)

    def walk(self, title):
        """Everything in a window, in the tree's order, asked for step by step: each costs several
        questions to the program."""
        def below(node):
            node.clearCache()
            for child in node:
                if child is None:
                    continue
                yield child
                yield from below(child)
        yield from below(self.window(title))

    def all(self, title):
        return list(self.walk(title))

    @staticmethod
    def is_showing(node):
        return node.getState().contains(pyatspi.STATE_SHOWING)

    @staticmethod
    def is_slider(node):
        return node.getRole() == pyatspi.ROLE_SLIDER

    @staticmethod
    def is_focusable(node):
        return node.getState().contains(pyatspi.STATE_FOCUSABLE)

    @staticmethod
    def is_focused(node):
        return node.getState().contains(pyatspi.STATE_FOCUSED)

    def is_active(self, title):
        """Whether the window has the keyboard."""
        return self.window(title).getState().contains(pyatspi.STATE_ACTIVE)

    @staticmethod
    def is_checked(node):
        return node.getState().contains(pyatspi.STATE_CHECKED)

    @staticmethod
    def is_enabled(node):
        """Whether anything can be done to it."""
        states = node.getState()
        return states.contains(pyatspi.STATE_ENABLED) and states.contains(pyatspi.STATE_SENSITIVE)

    @staticmethod
    def is_expanded(node):
        """Whether what it unfolds is; None for what unfolds nothing."""
        states = node.getState()
        if not states.contains(pyatspi.STATE_EXPANDABLE):
            return None
        return states.contains(pyatspi.STATE_EXPANDED)

    @staticmethod
    def actions(node):
        """What can be done to it, but for giving it the keyboard."""
        try:
            actions = node.queryAction()
        except NotImplementedError:
            return []
        names = [actions.getName(index) for index in range(actions.nActions)]
        return [name for name in names if name != "SetFocus"]

    def find(self, title, name, role=None):
        """The first with this name that can be seen; None where there is none."""
        for node in self.walk(title):
            if node.name == name and (role is None or node.getRoleName() == role) and \
                    self.is_showing(node):
                return node
        return None

    def wait_for(self, title, name, role=None):
        return wait_until(f"{title} shows {name}", lambda: self.find(title, name, role))

    def is_in_place(self, title):
        """Whether the program knows already where the window manager has put the window."""
        window = self.session.window(title)
        return window != "" and self.session.place(window) == self.box(self.window(title))[:2]

    def wait_until_still(self, title, name, role=None):
        """Its node, once nothing moves it any more: rows unfold, and windows are put somewhere."""
        node, boxes = None, []

        def is_still():
            nonlocal node
            box = self.box_if_shown(node, name)
            if box is None:
                node = self.find(title, name, role)
                box = self.box_if_shown(node, name)
            boxes.append(box)
            if box and boxes[-4:] == [box] * 4 and self.is_in_place(title):
                return node
            return None
        return wait_until(f"{name} stands still in {title}", is_still)

    def box_if_shown(self, node, name):
        """None for what is gone, hidden, or has become something else's."""
        if node is None:
            return None
        try:
            node.clearCache()
            return self.box(node) if node.name == name and self.is_showing(node) else None
        except GLib.Error:
            return None

    @staticmethod
    def box(node):
        box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return box.x, box.y, box.width, box.height

    def middle(self, node):
        x, y, width, height = self.box(node)
        return x + width // 2, y + height // 2

    def click(self, title, name):
        """A press of the mouse in the middle of it."""
        self.session.click(*self.middle(self.wait_until_still(title, name)))

    def press(self, title, name, action="Press"):
        """By the assistive tool itself. What it presses need not be in sight."""
        def find():
            return next((node for node in self.walk(title) if node.name == name), None)
        node = wait_until(f"{title} has {name}", find)
        actions = node.queryAction()
        names = [actions.getName(index) for index in range(actions.nActions)]
        actions.doAction(names.index(action))

    @contextmanager
    def heard(self, kind):
        """Gives a function that says of what events of this kind have come since."""
        names = []

        def hear(event):
            names.append(event.source.name)

        def names_until_now():
            while GLib.MainContext.default().iteration(False):
                pass
            return names
        pyatspi.Registry.registerEventListener(hear, kind)
        try:
            yield names_until_now
        finally:
            pyatspi.Registry.deregisterEventListener(hear, kind)

    def focused(self, title):
        """What has the keyboard; None where nothing has."""
        return next((node for node in self.walk(title)
                     if self.is_focused(node) and self.is_showing(node)), None)

    def wait_for_value(self, title, name, value):
        def is_so():
            slider = self.find(title, name, "slider")
            return slider is not None and abs(self.value(slider) - value) < 1e-3
        wait_until(f"{name} stands at {value}", is_so)

    def wait_for_description(self, title, name, description):
        def is_so():
            node = self.find(title, name)
            return node is not None and node.description == description
        wait_until(f"{name} is described as {description}", is_so)

    @staticmethod
    def value(node):
        return node.queryValue().currentValue

    def drag_slider(self, title, name, value):
        """Takes hold of the cap and lets go of it at `value`."""
        current = self.value(self.wait_until_still(title, name, "slider"))
        self.session.drag(self.place_of(title, name, current), self.place_of(title, name, value))

    def place_of(self, title, name, value):
        """Where a slider's cap stands at `value`."""
        slider = self.wait_until_still(title, name, "slider")
        x, y, width, height = self.box(slider)
        numbers = slider.queryValue()
        share = (value - numbers.minimumValue) / (numbers.maximumValue - numbers.minimumValue)
        return round(x + share * width), y + height // 2
