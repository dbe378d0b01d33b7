"""Elements of an XML document, written in the order in which they are given.

The attributes keep their order too, since readers of SCL take the first attribute of a Private or
P element as its kind.
"""

from xml.sax.saxutils import escape, quoteattr


class Element:
    """One element: a name, attributes in order (None is left out), children or a text."""

    def __init__(self, name, attributes=None, children=(), text=None):
        self.name = name
        self.attributes = {k: str(v) for k, v in (attributes or {}).items() if v is not None}
        self.children = [c for c in children if c is not None]
        self.text = text

    def add(self, *children):
        self.children.extend(c for c in children if c is not None)
        return self

    def lines(self, depth=0):
        """The text of the element, a line an element."""
        indent = " " * depth
        start = indent + "<" + self.name + "".join(
            " %s=%s" % (key, quoteattr(value)) for key, value in self.attributes.items())
        if self.text is not None:
            yield "%s>%s</%s>" % (start, escape(self.text), self.name)
        elif not self.children:
            yield start + "/>"
        else:
            yield start + ">"
            for child in self.children:
                yield from child.lines(depth + 1)
            yield "%s</%s>" % (indent, self.name)


def document(root):
    return '<?xml version="1.0" encoding="UTF-8"?>\n' + "\n".join(root.lines()) + "\n"
