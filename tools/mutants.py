# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
"""The small changes that tools/mutate.py makes to the sources, one at a time.

The sources are read as clang-format leaves them: a binary operator stands between blanks, the
brackets of a template do not.
"""

import bisect
import collections
import re

# One change: the characters from `begin` to `end` of a file become `text`. `key` names it for good:
# it holds no line number, so that it outlives changes elsewhere in the file.
Mutant = collections.namedtuple('Mutant', 'file operator begin end text key line')

Token = collections.namedtuple('Token', 'kind text begin end')

TOKEN = re.compile(r'''
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#[^\n]*(?:\\\n[^\n]*)*)
  | (?P<string>"(?:[^"\\\n]|\\.)*")
  | (?P<char>'(?:[^'\\\n]|\\.)*')
  | (?P<number>\d[\w.]*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<mark>::|->|\+\+|--|&&|\|\||[=!<>]=|[^\s\w])
''', re.VERBOSE | re.MULTILINE | re.DOTALL)

COMPARISONS = {'==': '!=', '!=': '==', '<': '<=', '<=': '<', '>': '>=', '>=': '>'}
CONTROL = {'if', 'else', 'for', 'while', 'do', 'switch', 'case', 'default', 'return', 'break',
           'continue', 'using', 'typedef', 'friend', 'public', 'private', 'protected', 'template'}
TYPES = {'const', 'constexpr', 'static', 'auto', 'bool', 'int', 'uint', 'ushort', 'char', 'double',
         'struct', 'class', 'enum', 'namespace', 'explicit', 'inline', 'virtual', 'extern'}
EXITS = {'return', 'break', 'continue'}


def tokens_of(source):
    """The tokens of a source that mean something: without comments and directives."""
    tokens = []
    for match in TOKEN.finditer(source):
        if match.lastgroup not in ('comment', 'directive'):
            tokens.append(Token(match.lastgroup, match.group(), match.start(), match.end()))
    return tokens


def partners(tokens):
    """For each opening bracket of ( { [ the index of its closing one, and the other way round."""
    found = {}
    open_ones = []
    for index, token in enumerate(tokens):
        if token.kind != 'mark':
            continue
        if token.text in '({[':
            open_ones.append(index)
        elif token.text in ')}]' and open_ones:
            found[index] = open_ones.pop()
            found[found[index]] = index
    return found


def spaced(source, token):
    """The token stands between blanks or line ends."""
    return source[token.begin - 1].isspace() and source[token.end].isspace()


class Statement(collections.namedtuple('Statement', 'first last block kind direct')):
    """Tokens `first` to `last`, the semicolon, in the block that the token `block` opens. `kind` is
    'expression', 'declaration' or 'exit'; `direct` is true for the whole body of an if or a loop."""


def kind_of(tokens, first):
    """The kind of the statement that begins with the token, None for what is no simple one."""
    word = tokens[first].text
    if word in EXITS:
        return 'exit'
    if word in CONTROL or tokens[first].kind not in ('word', 'mark') or word in '{};':
        return None
    if word == 'delete' or word == 'Q_EMIT':
        return 'expression'
    follower = tokens[first + 1]
    if word in TYPES or (tokens[first].kind == 'word' and follower.kind == 'word'):
        return 'declaration'
    if follower.text == '<' and follower.begin == tokens[first].end:
        return 'declaration'
    if follower.text in '*&' and tokens[first + 2].kind == 'word' \
            and follower.end == tokens[first + 2].begin:
        return 'declaration'
    return 'expression'


def is_body(tokens, index):
    """The bracket { opens a block of statements."""
    before = tokens[index - 1].text
    return before in (')', 'else', 'do', ';', '{', '}') \
        or (before in ('const', 'override') and tokens[index - 2].text == ')')


def statements_of(tokens, pairs):
    """All simple statements within the bodies of functions, in order."""
    found = []

    def read(first, block, direct):
        """Reads one statement, and the index after it."""
        word = tokens[first].text
        if word == '{':
            read_block(first)
            return pairs[first] + 1
        if word in ('if', 'for', 'while', 'switch'):
            return read(pairs[first + 1] + 1, block, True)
        if word in ('else', 'do'):
            return read(first + 1, block, True)
        if word in ('case', 'default'):
            while tokens[first].text != ':':
                first += 1
            return first + 1
        last = first
        while tokens[last].text != ';':
            last = pairs[last] + 1 if tokens[last].text in '({[' else last + 1
        kind = kind_of(tokens, first)
        if kind:
            found.append(Statement(first, last, block, kind, direct))
        return last + 1

    def read_block(opening):
        index = opening + 1
        while index < pairs[opening]:
            index = read(index, opening, False)

    index = 0
    while index < len(tokens):
        if tokens[index].text == '{' and index and tokens[index - 1].text in (')', 'const') \
                and is_body(tokens, index):
            read_block(index)
            index = pairs[index]
        index += 1
    return found


class Finder:
    """Finds the mutants of one file."""

    def __init__(self, file, source):
        self.file = file
        self.source = source
        self.tokens = tokens_of(source)
        self.pairs = partners(self.tokens)
        self.statements = statements_of(self.tokens, self.pairs)
        self.line_starts = [0] + [match.end() for match in re.finditer('\n', source)]
        self.mutants = []
        self.seen = collections.Counter()

    def add(self, operator, begin, end, text):
        """Adds a mutant, under a key made of the lines that change."""
        first = self.line_starts[bisect.bisect_right(self.line_starts, begin) - 1]
        last = self.source.find('\n', end)
        old = self.source[first:last]
        new = self.source[first:begin] + text + self.source[end:last]
        key = f'{self.file}: {operator}: {one_line(old)} => {one_line(new)}'
        self.seen[key] += 1
        if self.seen[key] > 1:
            key += f' [{self.seen[key]}]'
        line = bisect.bisect_right(self.line_starts, begin)
        self.mutants.append(Mutant(self.file, operator, begin, end, text, key, line))

    def replace(self, operator, token, text):
        self.add(operator, token.begin, token.end, text)

    def find(self):
        """All mutants in the order of the source."""
        for index, token in enumerate(self.tokens):
            self.find_at(index, token)
        for statement in self.statements:
            self.find_drop(statement)
        for left, right in zip(self.statements, self.statements[1:]):
            self.find_swap(left, right)
        return sorted(self.mutants, key=lambda mutant: (mutant.begin, mutant.end, mutant.operator,
                                                        mutant.text))

    def find_at(self, index, token):
        """Those that change one token, or a condition that a token begins."""
        before = self.tokens[index - 1].text if index else ''
        if self.is_default_argument(index):
            return
        if token.kind == 'word':
            self.find_at_word(index, token)
        elif token.kind == 'string':
            self.find_blank(token)
        elif token.kind == 'number' and token.text.isdigit():
            if not self.is_gate_limit(index) and not self.is_pure(index):
                self.replace('number', token, str(int(token.text) + 1))
        elif token.text in ('&&', '||') and spaced(self.source, token):
            self.replace('logic', token, '||' if token.text == '&&' else '&&')
        elif token.text in COMPARISONS and spaced(self.source, token) and before != 'operator':
            if self.tokens[index - 1].text != 'logLevel':
                self.replace('compare', token, COMPARISONS[token.text])
        elif token.text == '!':
            self.replace('negate', token, '')

    def find_at_word(self, index, token):
        if token.text in ('true', 'false'):
            self.replace('truth', token, 'false' if token.text == 'true' else 'true')
        elif token.text == 'logLevel':
            self.find_gate(index, token)
        elif token.text in ('if', 'while'):
            opening = self.tokens[index + 1]
            closing = self.tokens[self.pairs[index + 1]]
            condition = self.source[opening.end:closing.begin]
            # The "!" of "!x" goes by itself.
            bare = condition.startswith('!') and '&&' not in condition and '||' not in condition
            if 'logLevel' not in condition and not bare:
                self.add('negate', opening.end, closing.begin, f'!({condition})')
        elif token.text == 'static_cast':
            opening = index + 1
            while self.tokens[opening].text != '(':
                opening += 1
            self.add('cast', token.begin, self.tokens[opening].begin, '')

    def is_gate_limit(self, index):
        return self.tokens[index - 2].text == 'logLevel' \
            and self.tokens[index - 1].text in ('>', '==')

    def is_default_argument(self, index):
        """It is the callers, not the library, that are compiled with it."""
        return self.tokens[index - 1].text == '=' and self.tokens[index + 1:] != [] \
            and self.tokens[index + 1].text in ',)' and self.file.endswith('.h')

    def is_pure(self, index):
        """The 0 is that of a function without a body."""
        return self.tokens[index - 1].text == '=' and self.tokens[index - 2].text in (')', 'const')

    def find_gate(self, index, token):
        """A message comes one level too early, or one too late."""
        comparison, limit = self.tokens[index + 1], self.tokens[index + 2]
        if comparison.text in ('>', '=='):
            level = int(limit.text)
            if comparison.text == '>':
                self.add('gate', comparison.begin, comparison.end, '>=')
            self.replace('gate', limit, str(level + 1))
        elif comparison.text in (')', '&&') and self.tokens[index - 1].text in ('(', '&&'):
            self.replace('gate', token, 'true')
            self.replace('gate', token, 'logLevel > 1')

    def find_blank(self, token):
        """The blank in the middle of a text goes: in a statement or a message."""
        blanks = [match.start() for match in re.finditer(r'(?<=[^\s"]) (?=[^\s"])', token.text)]
        if blanks:
            blank = token.begin + blanks[len(blanks) // 2]
            self.add('blank', blank, blank + 1, '')

    def find_drop(self, statement):
        first, last = self.tokens[statement.first], self.tokens[statement.last]
        guarded = statement.direct or statement.block in self.inner_blocks()
        if statement.kind == 'expression' or (statement.kind == 'exit' and guarded):
            self.add('drop', first.begin, last.begin, '')

    def inner_blocks(self):
        """The opening brackets of the blocks that are not the body of a function."""
        if not hasattr(self, 'inner'):
            self.inner = set()
            open_until = -1
            for index, token in enumerate(self.tokens):
                if token.text == '{' and is_body(self.tokens, index):
                    if index < open_until:
                        self.inner.add(index)
                    else:
                        open_until = self.pairs[index]
        return self.inner

    def find_swap(self, left, right):
        """Two neighbours change places, unless both merely assign: those are mostly independent."""
        if left.block != right.block or left.direct or right.direct \
                or right.first != left.last + 1 or 'exit' in (left.kind, right.kind):
            return
        if left.kind == right.kind == 'declaration':
            return
        if self.is_assignment(left) and self.is_assignment(right):
            return
        left_begin, left_end = self.tokens[left.first].begin, self.tokens[left.last].end
        right_begin, right_end = self.tokens[right.first].begin, self.tokens[right.last].end
        between = self.source[left_end:right_begin]
        self.add('swap', left_begin, right_end,
                 self.source[right_begin:right_end] + between + self.source[left_begin:left_end])

    def is_assignment(self, statement):
        words = self.tokens[statement.first:statement.last]
        return statement.kind == 'expression' and any(token.text == '=' for token in words)


def one_line(text):
    """The text on one line: each line end with the blanks around it as one blank."""
    return re.sub(r'\s*\n\s*', ' ', text).strip()


def mutants_of(file, source):
    """All mutants of a source, in order."""
    return Finder(file, source).find()


def apply(source, mutant):
    """The source with the mutant in it."""
    return source[:mutant.begin] + mutant.text + source[mutant.end:]
