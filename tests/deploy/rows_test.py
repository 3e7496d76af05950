"""What the role's filters make of what the tasks registered."""

import importlib.machinery
import pathlib
import unittest

CHECKOUT = pathlib.Path(__file__).resolve().parents[2]
FILE = CHECKOUT / "deploy/ansible/roles/quirloduino/filter_plugins/quirloduino.py"
role = importlib.machinery.SourceFileLoader("quirloduino", str(FILE)).load_module()


def rows(before=(("/a", ""),), after=(("/a", "2"),), due=("/a",), runs=(), survey=None, audits=(), **more):
    return role.quirloduino_rows(before, survey or {}, after, runs, audits, due, "2", **more)


def row_of(run, marker="2", **more):
    """State and words of the one folder after this run."""
    [row] = rows(after=[("/a", marker)], runs=[{"item": "/a", **run}], **more)
    return row["state"], row["words"]


class AfterARun(unittest.TestCase):
    def test_status_0_and_the_marker_is_an_install(self):
        self.assertEqual(row_of({"rc": 0}), ("installed", ""))

    def test_status_0_without_the_marker_is_none(self):
        self.assertEqual(row_of({"rc": 0}, marker="1"), ("failed", "ended well, but the folder's marker reads '1'"))

    def test_each_refusal_is_told_in_one_line(self):
        for words in ["no Arduino directory\n", "Arduino directory name too long\n",
                      "Unable to access directory: /a\\\n",
                      'Directory "/a\\" is not a supported Arduino\r\n Arduino versions supported: 1.8.5\r\n']:
            state, told = row_of({"rc": 1, "stderr": words}, marker="")
            self.assertEqual((state, told), ("refused", " ".join(words.split())))

    def test_refusal_tells_the_newer_marker(self):
        state, told = row_of({"rc": 1, "stderr": 'Directory "/a\\" is not'}, marker="3")
        self.assertEqual((state, told), ("refused", 'Directory "/a\\" is not (its marker reads 3)'))

    def test_words_of_a_failed_write_are_no_refusal(self):
        self.assertEqual(row_of({"rc": 1, "stderr": "Error: x\n"}), ("failed", "Error: x"))

    def test_silence_with_status_1_is_the_payload(self):
        self.assertEqual(row_of({"rc": 1, "stderr": ""})[1], "status 1 and no word: its payload could not be made ready")

    def test_kill_is_told_by_its_signal(self):
        self.assertEqual(row_of({"rc": 137})[1], "the installer was killed by signal 9")

    def test_crash_on_windows_is_told_by_ansibles_words(self):
        self.assertEqual(row_of({"rc": -1073741819, "msg": "non-zero return code"})[1], "non-zero return code")

    def test_status_of_flock_means_another_install(self):
        self.assertEqual(row_of({"rc": 75})[1], "another install is at work on this host")

    def test_time_limit_is_told_by_ansibles_words(self):
        self.assertEqual(row_of({"msg": "async task did not complete"}), ("failed", "async task did not complete"))

    def test_host_that_is_gone_afterwards_is_unreachable(self):
        gone = {"unreachable": True, "msg": "no route"}
        self.assertEqual(row_of({"msg": "async task did not complete"}, survey=gone), ("unreachable", "no route"))

    def test_result_stands_though_the_host_is_gone_afterwards(self):
        gone = {"unreachable": True, "msg": "no route"}
        self.assertEqual(row_of({"rc": 1, "stderr": "Error: x"}, survey=gone), ("failed", "Error: x"))


class WithoutARun(unittest.TestCase):
    def test_folder_that_is_not_due_holds_it_already(self):
        self.assertEqual(rows(due=())[0]["state"], "already")

    def test_check_tells_what_is_due(self):
        self.assertEqual(rows(check=True)[0]["state"], "due")

    def test_trouble_fails_what_is_due_and_leaves_the_rest(self):
        found = rows(before=[("/a", ""), ("/b", "2")], trouble="no space")
        self.assertEqual([(r["state"], r["words"]) for r in found], [("failed", "no space"), ("already", "")])

    def test_host_without_folders_is_told_once(self):
        self.assertEqual([r["state"] for r in rows(before=())], ["none"])
        self.assertEqual([r["state"] for r in rows(before=(), trouble="x")], ["failed"])
        self.assertEqual([r["state"] for r in rows(before=(), survey={"unreachable": True, "msg": "off"})], ["unreachable"])

    def test_audit_that_finds_something_is_damage(self):
        found = rows(due=(), audits=[{"item": "/a", "rc": 1, "stdout": "missing: x\ndiffers: y\n"}])
        self.assertEqual((found[0]["state"], found[0]["words"]), ("damaged", "missing: x differs: y"))
        self.assertEqual(rows(due=(), audits=[{"item": "/a", "rc": 0, "stdout": "fine"}])[0]["state"], "already")


class Table(unittest.TestCase):
    HOSTS = {
        "one": {"quirloduino_results": [{"folder": "/a", "state": "failed", "words": 'say "x", y'}]},
        "three": {"quirloduino_results": [{"folder": "/a", "state": "installed", "words": ""}]},
        "two": {},
    }

    def gathered(self):
        return role.quirloduino_gather(["one", "two", "three"], self.HOSTS)

    def test_what_needs_a_look_stands_last_above_the_count(self):
        self.assertEqual(role.quirloduino_table(self.gathered()), [
            "three  installed    /a",
            'one    failed       /a: say "x", y',
            "two    unreachable  the host never came to its end",
            "1 installed, 1 failed, 1 unreachable",
        ])

    def test_csv_quotes_words(self):
        self.assertEqual(role.quirloduino_csv(self.gathered()).splitlines()[:2],
                         ["host,state,folder,words", 'one,failed,/a,"say ""x"", y"'])

    def test_just_some_states_need_a_look(self):
        bad = [state for state in role.STATES if role.quirloduino_bad([{"state": state}])]
        self.assertEqual(bad, ["refused", "failed", "damaged", "unreachable"])


if __name__ == "__main__":
    unittest.main()
