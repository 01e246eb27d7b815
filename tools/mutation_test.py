#!/usr/bin/env python3
"""The places that tools/mutation.py finds in a few lines of code, and what becomes of them."""

import unittest

from mutation_sites import mutants_of


def changes(code):
    return {(one.before, one.after) for one in mutants_of("room/file.cpp", code)}


def results(line):
    """What becomes of a statement's line inside of a function."""
    return {one.after.removeprefix("void f() { ")
            for one in mutants_of("room/file.cpp", "void f() {\n" + line + "\n}\n") if one.line == 2}


class Sites(unittest.TestCase):
    def test_flips_comparisons_and_moves_their_bounds(self):
        self.assertEqual(results("return a < b;"), {"return a <= b;", "return a >= b;"})
        self.assertEqual(results("return a != b;"), {"return a == b;"})

    def test_takes_the_brackets_of_templates_for_no_comparison(self):
        self.assertEqual(results("const std::vector<int> a = b;"), set())

    def test_flips_signs(self):
        self.assertEqual(results("return a + b * -c;"),
                         {"return a - b * -c;", "return a + b / -c;", "return a + b * c;"})
        self.assertEqual(results("return a + \"text\";"), set())

    def test_drops_calls_assignments_and_jumps(self):
        self.assertEqual(results("m_list.refresh();"), {";"})
        self.assertEqual(results("*place = value;"), {";"})
        self.assertEqual(results("if (a == b) return;"), {"if (a != b) return;", "if (a == b) ;"})
        self.assertEqual(results("throw StepError(\"no\");"), {";"})

    def test_keeps_declarations(self):
        self.assertEqual(results("Type name(value);"), set())
        self.assertEqual(results("Type& name = value;"), set())
        self.assertEqual(changes("class A {\n    A();\n    void f();\n};\n"), set())

    def test_drops_statements_of_lambdas_and_cases(self):
        self.assertIn("g([&] { ; });", results("g([&] { h(); });"))
        self.assertIn("case Kind::A: ; break;", results("case Kind::A: h(); break;"))

    def test_tells_dropped_statements_by_the_line_before(self):
        found = changes("void f() {\n    if (g())\n        return;\n    h();\n}\n")
        self.assertIn(("if (g()) return;", "if (g()) ;"), found)
        self.assertIn(("return; h();", "return; ;"), found)

    def test_drops_a_statement_of_several_lines_as_one(self):
        self.assertEqual(results("call(first,\n     second);"), {";"})

    def test_swaps_horizontal_and_vertical(self):
        self.assertEqual(results("return twipsPerPixelX();"), {"return twipsPerPixelY();"})
        self.assertEqual(results("return m_left;"), {"return m_top;"})
        self.assertEqual(results("return maximum;"), set())
        self.assertEqual(results("int width;"), set())

    def test_changes_constants(self):
        self.assertEqual(results("return 1'000;"), {"return 1001;"})
        self.assertEqual(results("return 0x7fU;"), {"return 0x80U;"})
        self.assertEqual(results("return 0.5;"), {"return 1.5;"})
        self.assertEqual(results("return true;"), {"return false;"})
        self.assertEqual(results("return 'a';"), {"return 'q';"})

    def test_negates_conditions_that_hold_no_comparison(self):
        self.assertIn("if (!(isOpen())) {", results("if (isOpen()) {\n}"))

    def test_leaves_comments_texts_and_directives_alone(self):
        self.assertEqual(changes("#include <a>\n#if X == 1\n#endif\n// a < b\n/* 1 */\n"), set())
        self.assertEqual(results("return \"1 < 2\";"), set())
        self.assertEqual(results("return R\"(1 < 2)\";"), set())

    def test_leaves_what_the_compiler_asserts_alone(self):
        self.assertEqual(results("static_assert(sizeof(int) == 4);"), set())


if __name__ == "__main__":
    unittest.main()
