"""The program's windows as an assistive tool finds them, and real presses on what is found."""

import pyatspi

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

    def all(self, title):
        """Everything in a window, in the tree's order."""
        found = []

        def walk(node):
            node.clearCache()
            for child in node:
                if child is None:
                    continue
                found.append(child)
                walk(child)
        walk(self.window(title))
        return found

    def find(self, title, name, role=None):
        """The first with this name that can be seen; None where there is none."""
        for node in self.all(title):
            if node.name == name and (role is None or node.getRoleName() == role) and \
                    node.getState().contains(pyatspi.STATE_SHOWING):
                return node
        return None

    def wait_for(self, title, name, role=None):
        return wait_until(f"{title} shows {name}", lambda: self.find(title, name, role))

    @staticmethod
    def middle(node):
        box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return box.x + box.width // 2, box.y + box.height // 2

    def click(self, title, name):
        """A press of the mouse in the middle of it."""
        self.session.click(*self.middle(self.wait_for(title, name)))

    @staticmethod
    def value(node):
        return node.queryValue().currentValue

    def drag_slider(self, title, name, value):
        """Takes hold of the cap and lets go of it at `value`."""
        slider = self.wait_for(title, name, "slider")
        box = slider.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        numbers = slider.queryValue()
        span = numbers.maximumValue - numbers.minimumValue

        def at(number):
            share = (number - numbers.minimumValue) / span
            return round(box.x + share * box.width), box.y + box.height // 2
        self.session.drag(at(numbers.currentValue), at(value))
