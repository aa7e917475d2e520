#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
"""Changes src/ in one small way after another, and finds out whether a test notices.

Works on a copy of the tracked files, in build/mutation unless --work names another folder; the
checkout is only read. There the classes are one shared library, so that a change costs the
compilation of one file and no test is linked again. The tests run one after another, those first
that bear the file's name, up to the first that fails. A test that takes ten times its usual time
has noticed, too.

Results go to results.jsonl in the work folder as they come; --resume goes on from there.
tools/mutants-equivalent.txt lists the mutants that change nothing that can be observed, each with the
reason. Exit code 1 when a mutant survives that it does not list, or when it lists one that does not
survive.
"""

import argparse
import collections
import concurrent.futures
import fnmatch
import json
import pathlib
import queue
import random
import re
import sys
import threading
import time

sys.dont_write_bytecode = True  # nothing of this run is left in tools/

import mutants  # noqa: E402
from mutationbuild import LABELS, PLUGIN_SOURCES, Build, Job  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parent.parent
CORE_SOURCE = 'src/worker/thrworker.cpp'
EQUIVALENT = ROOT / 'tools' / 'mutants-equivalent.txt'

# Not changed: hardly more than default values, which are compiled into the tests as well.
RECORDS = ('src/export/employeerecord.h', 'src/repository/branchrecord.h',
           'src/repository/groupsplan.h')

# Tests whose names do not begin as the source's does.
FAVOURITES = {
    'src/export/exportfile.cpp': ['exportfile', 'import', 'hostilefiles'],
    'src/export/exportline.cpp': ['exportline', 'importcells', 'import'],
    'src/plugin/talvenhr.cpp': ['settings', 'lifecycle', 'inifile', 'destruction', 'plugin'],
    'src/repository/branchesrepository.cpp': ['branches'],
    'src/repository/branchesrepository_propagation.cpp': ['propagation'],
    'src/repository/branchesrepository_triples.cpp': ['triples'],
    'src/repository/termsyncrepository.cpp': ['termsync', 'propagation'],
    'src/worker/thrworker.cpp': ['worker', 'dosync', 'lifecycle'],
    'src/worker/thrworker_branch.cpp': ['branch', 'people'],
    'src/worker/thrworker_fund.cpp': ['fund', 'recordfund'],
    'src/worker/thrworker_import.cpp': ['import', 'importcells'],
    'src/worker/thrworker_people.cpp': ['people', 'peoplereads'],
    'src/worker/thrworker_record.cpp': ['record', 'recordfund', 'recordcalls', 'waiting', 'dosync'],
    'src/worker/thrworker_supervisor.cpp': ['supervisor'],
}


class Campaign:
    """Asks the tests about one mutant after another."""

    def __init__(self, build, labels, results):
        self.build = build
        self.tests = [test for test in build.tests() if test.label in labels]
        self.results = results
        self.kills = collections.Counter()
        self.lock = threading.Lock()
        self.done = 0

    def measure(self):
        """Runs all tests on what is unchanged, though built as a mutant is; they must pass. Sets the
        limit of each, in seconds."""
        job = Job(self.build, 'base')
        self.limits = {}
        for file in (CORE_SOURCE, PLUGIN_SOURCES[0]):
            if not job.make(mutants.Mutant(file, 'none', 0, 0, '', file, 1)):
                sys.exit(f'mutate: cannot build {file} as it is')
            for test in self.tests:
                if file in PLUGIN_SOURCES and test.label != 'plugin':
                    continue
                begin = time.monotonic()
                if job.test(test, 600) != 'passed':
                    sys.exit(f'mutate: {test.name} fails on the unchanged sources')
                self.limits[test.name] = 10 + 10 * (time.monotonic() - begin)
        print(f'mutate: {len(self.tests)} tests pass on the unchanged sources', flush=True)

    def order(self, mutant):
        """The tests, those first that have killed most mutants of the file or bear its name. For the
        plugin object only those that hold one."""
        stem = re.sub(r'^thrworker_', '', pathlib.Path(mutant.file).stem)
        favourites = FAVOURITES.get(mutant.file, [stem])

        def rank(test):
            name = test.name.split('.')[0].removeprefix('tst_')
            zone = 'UTC' in test.name or 'America' in test.name
            place = favourites.index(name) if name in favourites else len(favourites)
            return place, zone, -self.kills[mutant.file, test.name]

        tests = [test for test in self.tests
                 if mutant.file not in PLUGIN_SOURCES or test.label == 'plugin']
        favoured = [test for test in tests
                    if test.name.split('.')[0].removeprefix('tst_') in favourites]
        favoured.sort(key=rank)
        rest = [test for test in tests if test not in favoured]
        rest.sort(key=lambda test: (LABELS.index(test.label),
                                    -self.kills[mutant.file, test.name]))
        return favoured + rest

    def try_one(self, job, mutant):
        """The status of a mutant, and the test that decided it."""
        if not job.make(mutant):
            return 'invalid', ''
        for test in self.order(mutant):
            outcome = job.test(test, self.limits[test.name])
            if outcome != 'passed':
                self.kills[mutant.file, test.name] += 1
                return outcome, test.name
        return 'survived', ''

    def note(self, mutant, begin, outcome, total):
        status, test = outcome
        seconds = round(time.monotonic() - begin, 2)
        entry = {'key': mutant.key, 'file': mutant.file, 'operator': mutant.operator,
                 'line': mutant.line, 'status': status, 'test': test, 'seconds': seconds}
        with self.lock:
            self.done += 1
            with open(self.results, 'a', encoding='utf-8') as target:
                target.write(json.dumps(entry, ensure_ascii=False) + '\n')
            if status == 'survived':
                print(f'survived ({self.done} of {total}): line {mutant.line}: {mutant.key}',
                      flush=True)

    def run(self, chosen, jobs):
        """All mutants on so many jobs."""
        places = queue.Queue()
        for number in range(jobs):
            places.put(Job(self.build, number))

        def work(mutant):
            job = places.get()
            begin = time.monotonic()
            try:
                self.note(mutant, begin, self.try_one(job, mutant), len(chosen))
            finally:
                places.put(job)

        with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
            for done in [pool.submit(work, mutant) for mutant in chosen]:
                done.result()


def all_mutants(pattern):
    """The mutants of all files that fit the pattern, in order."""
    found = []
    for path in sorted((ROOT / 'src').rglob('*')):
        name = str(path.relative_to(ROOT))
        if path.suffix in ('.cpp', '.h') and name not in RECORDS and fnmatch.fnmatch(name, pattern):
            found += mutants.mutants_of(name, path.read_text(encoding='utf-8'))
    return found


def read_equivalent():
    """The keys of the list. Ends the program at one without a reason above it."""
    keys = set()
    reason = False
    for number, line in enumerate(EQUIVALENT.read_text(encoding='utf-8').splitlines(), 1):
        if not line.strip():
            reason = False
        elif line.startswith('#'):
            reason = True
        elif not reason:
            sys.exit(f'{EQUIVALENT}:{number}: no reason')
        else:
            keys.add(line.strip())
    return keys


def read_results(path):
    """The newest result of each mutant by its key."""
    results = {}
    if path.is_file():
        for line in path.read_text(encoding='utf-8').splitlines():
            entry = json.loads(line)
            results[entry['key']] = entry
    return results


def report(chosen, results, equivalent):
    """Prints the figures and what is not as listed. True when all is as listed."""
    table = collections.defaultdict(collections.Counter)
    survivors, killed_though_listed = [], []
    for mutant in chosen:
        entry = results.get(mutant.key)
        status = entry['status'] if entry else 'not run'
        if status == 'survived' and mutant.key in equivalent:
            status = 'equivalent'
        elif status == 'survived':
            survivors.append(mutant)
        elif mutant.key in equivalent and entry:
            killed_though_listed.append(mutant)
        table[mutant.file][status] += 1
        table[mutant.operator][status] += 1
        table['all'][status] += 1
    statuses = ['killed', 'timeout', 'equivalent', 'survived', 'invalid', 'not run']
    print(f'{"":50}' + ''.join(f'{status:>12}' for status in statuses))
    for name, counts in table.items():
        print(f'{name:50}' + ''.join(f'{counts[status]:12}' for status in statuses))
    for mutant in survivors:
        print(f'Survived (line {mutant.line}):\n{mutant.key}')
    for mutant in killed_though_listed:
        print(f'Listed as equivalent, yet not survived:\n{mutant.key}')
    known = {mutant.key for mutant in all_mutants('*')}
    gone = sorted(equivalent - known)
    for key in gone:
        print(f'Listed as equivalent, yet no mutant:\n{key}')
    return not survivors and not killed_though_listed and not gone


def options():
    parser = argparse.ArgumentParser(description=__doc__.split('\n\n')[0])
    parser.add_argument('--list', action='store_true', help='only list the mutants')
    parser.add_argument('--report', action='store_true', help='only the figures of the last run')
    parser.add_argument('--only', default='*', metavar='GLOB', help='files, as src/worker/*.cpp')
    parser.add_argument('--sample', type=int, metavar='N', help='N mutants, spread over all')
    parser.add_argument('--seed', type=int, default=1, metavar='S', help='of the sample')
    parser.add_argument('--jobs', type=int, default=1, metavar='N', help='mutants at a time')
    parser.add_argument('--labels', default=','.join(LABELS), help='labels of the tests to ask')
    parser.add_argument('--resume', action='store_true',
                        help='keep the results of earlier runs, and go on with the others')
    parser.add_argument('--again', action='store_true',
                        help='with --resume: repeat those that survived and are not listed')
    parser.add_argument('--work', type=pathlib.Path, default=ROOT / 'build' / 'mutation',
                        metavar='DIR', help='where the copy is built')
    return parser.parse_args()


def main():
    arguments = options()
    found = all_mutants(arguments.only)
    if arguments.sample and arguments.sample < len(found):
        # A larger sample of the same seed holds the smaller one.
        order = list(range(len(found)))
        random.Random(arguments.seed).shuffle(order)
        found = [found[index] for index in sorted(order[:arguments.sample])]
    if arguments.list:
        for mutant in found:
            print(f'{mutant.line}: {mutant.key}')
        print(f'{len(found)} mutants')
        return 0

    work = arguments.work.resolve()
    work.mkdir(parents=True, exist_ok=True)
    path = work / 'results.jsonl'
    equivalent = read_equivalent()
    if not arguments.report:
        if not arguments.resume:
            path.unlink(missing_ok=True)
        results = read_results(path)
        chosen = [mutant for mutant in found if mutant.key not in results
                  or arguments.again and results[mutant.key]['status'] == 'survived'
                  and mutant.key not in equivalent]
        campaign = Campaign(Build(ROOT, work), arguments.labels.split(','), path)
        campaign.measure()
        campaign.run(chosen, arguments.jobs)
    return 0 if report(found, read_results(path), equivalent) else 1


if __name__ == '__main__':
    sys.exit(main())
