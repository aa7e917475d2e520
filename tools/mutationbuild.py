# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
"""The copy of the tree in which tools/mutate.py builds and runs its mutants."""

import collections
import json
import os
import re
import shlex
import shutil
import signal
import subprocess
import sys
import threading

import mutants

# One library for all tests, which shows all its classes; the copy alone is changed.
COPY_CHANGES = {
    'src/CMakeLists.txt': [('add_library(talvenhr_core STATIC', 'add_library(talvenhr_core SHARED')],
    # Each job has a plugin of its own, in the folder beside that in which its tests run.
    'tests/support/CMakeLists.txt': [('add_library(talvenhr_plugintest STATIC',
                                      'add_library(talvenhr_plugintest SHARED'),
                                     ('TALVENHR_PLUGIN_FILE="$<TARGET_FILE:TalvenHR>"',
                                      'TALVENHR_PLUGIN_FILE="/proc/self/cwd/../plugin/'
                                      'libTalvenHR.so"')],
    'cmake/TalvenTargets.cmake': [('CXX_VISIBILITY_PRESET hidden', 'CXX_VISIBILITY_PRESET default'),
                                  ('VISIBILITY_INLINES_HIDDEN ON', 'VISIBILITY_INLINES_HIDDEN OFF')],
}
PLUGIN_SOURCES = ('src/plugin/talvenhr.cpp', 'src/plugin/talvenhr.h',
                  'src/plugin/serverinterface.h', 'src/plugin/verinfointerface.h')
# What the sources include, and what that includes, not all of Qt: it has to be quick.
PRECOMPILED = ['QDateTime', 'QFile', 'QFileInfo', 'QHash', 'QLocale', 'QMutex', 'QMutexLocker',
               'QObject', 'QProcess', 'QSqlDatabase', 'QSqlError', 'QSqlQuery', 'QStringList',
               'QTimer', 'QVariant', 'QVector']

# In this order: the fault sweep takes long, and the tests on a database start a server each.
LABELS = ['unit', 'plugin', 'faults', 'database']

Test = collections.namedtuple('Test', 'name command environment label')


def run(command, **options):
    """Runs a command to its end; a failure ends the program with its output."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          **options)
    if done.returncode:
        sys.exit(f'{done.stdout}\nmutate: failed: {shlex.join(map(str, command))}')
    return done.stdout


class Build:
    """The copy, built once as it is."""

    def __init__(self, root, work):
        self.root = root
        self.work = work
        self.tree = work / 'tree'
        self.folder = work / 'build'
        self.copy()
        self.configure()
        with open(self.folder / 'compile_commands.json', encoding='utf-8') as source:
            self.compilations = json.load(source)
        self.precompile()

    def copy(self):
        """Brings the copy up to date; a file that is unchanged keeps its time."""
        listed = run(['git', 'ls-files', '--cached', '--others', '--exclude-standard'], cwd=self.root)
        for name in listed.splitlines():
            if not (self.root / name).is_file():
                continue
            content = (self.root / name).read_bytes()
            for old, new in COPY_CHANGES.get(name, []):
                if old.encode() not in content:
                    sys.exit(f'mutate: {name} has no: {old}')
                content = content.replace(old.encode(), new.encode())
            target = self.tree / name
            if not target.is_file() or target.read_bytes() != content:
                target.parent.mkdir(parents=True, exist_ok=True)
                target.write_bytes(content)
                shutil.copymode(self.root / name, target)

    def configure(self):
        launcher = ['-DCMAKE_CXX_COMPILER_LAUNCHER=ccache'] if shutil.which('ccache') else []
        run(['cmake', '-G', 'Ninja', '-S', self.tree, '-B', self.folder, '-DCMAKE_BUILD_TYPE=None',
             '-DCMAKE_CXX_FLAGS=-O0', '-DCMAKE_EXPORT_COMPILE_COMMANDS=ON',
             '-DCMAKE_EXE_LINKER_FLAGS=-Wl,--enable-new-dtags',
             # What moc writes includes the header by the folders to search, where a changed one is
             # found first, not by its place in the tree.
             '-DCMAKE_AUTOMOC_PATH_PREFIX=ON', '-DTALVENHR_BUILD_BENCHMARKS=OFF', *launcher])
        print('mutate: building the copy', flush=True)
        run(['nice', 'ninja', '-C', self.folder, f'-j{os.cpu_count()}'])

    def compiler(self, compilation):
        """The command of a compilation without its input and output."""
        words = shlex.split(compilation['command'])
        if words[0].endswith('ccache'):
            words = words[1:]
        return words[:words.index('-o')]

    def compilations_of(self, target):
        """The compilations of a target's sources, by file relative to the tree."""
        folder = f'/{target}.dir/'
        return {os.path.relpath(one['file'], self.tree): one for one in self.compilations
                if folder in one['output' if 'output' in one else 'command']}

    def precompile(self):
        """Qt's headers, read once. For the library's own sources only: the options must agree."""
        first = next(iter(self.compilations_of('talvenhr_core').values()))
        header = self.work / 'precompiled.h'
        header.write_text(''.join(f'#include <{name}>\n' for name in PRECOMPILED))
        run([*self.compiler(first), '-x', 'c++-header', '-o', f'{header}.gch', '-c', header],
            cwd=self.folder)
        self.precompiled = header

    def objects(self, target):
        """The object files of a target by source; of generated sources, too."""
        found = {}
        for file, one in self.compilations_of(target).items():
            words = shlex.split(one['command'])
            found[file] = (self.folder / words[words.index('-o') + 1], one)
        return found

    def tests(self):
        """The tests that run the library, in the order in which they are asked."""
        listing = json.loads(run(['ctest', '--show-only=json-v1'], cwd=self.folder))
        found = []
        for test in listing['tests']:
            properties = {one['name']: one['value'] for one in test['properties']}
            label = next((one for one in LABELS if one in properties.get('LABELS', [])), None)
            if label:
                environment = dict(one.split('=', 1) for one in properties['ENVIRONMENT'])
                found.append(Test(test['name'], test['command'], environment, label))
        # The zone of most of the tests first, then the others.
        other_zone = re.compile(r'\.(UTC|America.*)$')
        return sorted(found, key=lambda test: (LABELS.index(test.label),
                                               bool(other_zone.search(test.name))))


class Job:
    """A place to compile one mutant and to run tests on it."""

    def __init__(self, build, number):
        self.build = build
        self.folder = build.work / f'job-{number}'
        self.temporary = self.folder / 't'
        self.folder.mkdir(parents=True, exist_ok=True)

    def make(self, mutant):
        """Compiles and links the mutant. False when it is no valid C++."""
        for stale in ('include', 'lib', 'plugin'):
            shutil.rmtree(self.folder / stale, ignore_errors=True)
        (self.folder / 'lib').mkdir()
        (self.folder / 'plugin').mkdir()
        source = (self.build.tree / mutant.file).read_text(encoding='utf-8')
        changed = mutants.apply(source, mutant)
        if mutant.file in PLUGIN_SOURCES:
            return self.make_library('talvenhr_plugintest', mutant.file, changed) \
                and self.make_library('TalvenHR', mutant.file, changed)
        shutil.copy(self.build.folder / 'plugin' / 'libTalvenHR.so', self.shared_object('TalvenHR'))
        return self.make_library('talvenhr_core', mutant.file, changed)

    def make_library(self, target, file, changed):
        objects = self.build.objects(target)
        replaced = {}
        if file.endswith('.h'):
            header = self.folder / 'include' / os.path.relpath(file, 'src')
            header.parent.mkdir(parents=True, exist_ok=True)
            header.write_text(changed, encoding='utf-8')
            # The meta-objects, too: they hold the virtual tables, and with them what is inline there.
            sources = [one for one in objects
                       if one.startswith('src/') or one.endswith('mocs_compilation.cpp')]
        else:
            sources = [file]
        for name in sources:
            output = self.folder / (name.replace('/', '_') + '.o')
            given = self.build.tree / name
            if name == file:
                given = self.folder / os.path.basename(name)
                given.write_text(changed, encoding='utf-8')
            if not self.compile(objects[name][1], given, output):
                return False
            replaced[name] = output
        files = [replaced.get(name, path) for name, (path, _) in objects.items()]
        command = ['g++', '-shared', '-o', self.shared_object(target), *files]
        if target != 'talvenhr_plugintest':
            # What is inline in a header counts as it is here, not as it is in the test. (The other
            # holds parts of the tests, which must not come twice.)
            command.append('-Wl,-Bsymbolic')
        if target != 'talvenhr_core':
            command += self.libraries_below(target)
        return subprocess.run([*map(str, command), '-lQt5Sql', '-lQt5Core'], capture_output=True,
                              check=False).returncode == 0

    def libraries_below(self, target):
        core = self.build.folder / 'src'
        support = self.build.folder / 'tests' / 'support' / 'libtalvenhr_testsupport.a'
        below = [] if target == 'TalvenHR' else [support, '-lQt5Test']
        return [*below, f'-L{core}', '-ltalvenhr_core']

    def shared_object(self, target):
        if target == 'TalvenHR':
            return self.folder / 'plugin' / 'libTalvenHR.so'
        return self.folder / 'lib' / f'lib{target}.so'

    def compile(self, compilation, source, output):
        words = self.build.compiler(compilation)
        if (self.folder / 'include').is_dir():
            words.insert(1, f'-I{self.folder / "include"}')
        if '-DQT_PLUGIN' not in words and 'plugintest' not in compilation['command']:
            words += ['-include', str(self.build.precompiled)]
        command = [*words, '-w', '-o', str(output), '-c', str(source)]
        return subprocess.run(command, cwd=self.build.folder, capture_output=True,
                              check=False).returncode == 0

    def test(self, test, limit):
        """Runs one test: 'passed', 'killed', or 'timeout' after so many seconds."""
        shutil.rmtree(self.temporary, ignore_errors=True)
        self.temporary.mkdir()
        environment = {**os.environ, **test.environment, 'TMPDIR': str(self.temporary),
                       'HOME': str(self.temporary),
                       'LD_LIBRARY_PATH': f'{self.folder / "lib"}:{self.build.folder / "src"}'}
        process = subprocess.Popen([*test.command, '-nocrashhandler'], cwd=self.temporary,
                                   env=environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                   start_new_session=True)
        late = threading.Event()
        # All of the group: the test's own children, too, a server or an export command.
        watch = threading.Timer(limit, lambda: (late.set(), end_group(process)))
        watch.start()
        try:
            # The first failure decides, the rest of the test can be spared.
            failed = any(line.startswith((b'FAIL!', b'XPASS', b'QFATAL'))
                         for line in process.stdout)
            if late.is_set():
                return 'timeout'
            return 'killed' if failed or process.wait() != 0 else 'passed'
        finally:
            watch.cancel()
            end_group(process)
            process.stdout.close()
            process.wait()


def end_group(process):
    """Ends a process and those that it started, if they are still there."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
