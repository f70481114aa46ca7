// Long value lists read straight from the text: the tree the parser would make, the report of
// an error behind them, and the lists that are left to the parser.
#include <string>

#include "OrmakTest.h"
#include "ParseRule.h"
#include "language/ScriptTree.h"
#include "language/TreeReader.h"
#include "session/Recognizers.h"

namespace {

/* A tree as text, read alike from the parser's nodes and from a ScriptTree's. */
std::string dump(pANTLR3_BASE_TREE node) {
    const char *text = ormak::tree::text(node);
    std::string out = std::to_string(ormak::tree::type(node)) + ":" + (text ? text : "<null>");
    int count = ormak::tree::count(node);
    if (count > 0) {
        out += "(";
        for (int i = 0; i < count; i++) out += dump(ormak::tree::child(node, i)) + " ";
        out += ")";
    }
    return out;
}

std::string parsed(const std::string &script) {
    std::string result = "ERROR";
    with_rule_tree(script, ORMAK_RULE(script), [&](pANTLR3_BASE_TREE tree, bool whole) {
        if (tree && whole) result = dump(tree);
    });
    return result;
}

/* The tree of `script` with its long lists taken from the text, or "NOT TAKEN". */
std::string taken(const std::string &script) {
    ormak::ScriptTree tree;
    int size = (int)script.size();
    const char *text = tree.take_lists(script.c_str(), &size);
    if (text == script.c_str()) return "NOT TAKEN";
    recognition_status = 0;
    pANTLR3_BASE_TREE parsed_tree = nullptr;
    std::string result = "ERROR";
    if (ormak::parse_script(text, size, &parsed_tree) == 0) {
        tree.build(parsed_tree, text, nullptr);
        result = dump(tree.root());
    }
    ormak::reset_recognizers();
    recognition_status = 0;
    return result;
}

std::string repeated(const std::string &item, int times) {
    std::string list;
    for (int i = 0; i < times; i++) list += (i ? ", " : "") + item;
    return list;
}

} // namespace

TEST(LiteralLists, TakenListsGiveTheParsersTree) {
    const char *items[] = {
        "1, -2, +3, 0x1F, -0X1f, 0xab, 007",
        "1.5, 1., -.5, 1E+5, 1.5e-3, 2.e3",
        "\"a b\", \"\", \"x,y\", \"(\", \"VALUES(1)\"",
        "(1, 2), (3), (), ((4, (5)), 6)",
        "  1 ,, 3\t, ( 4 )  ",
    };
    for (const char *item : items) {
        SCOPED_TRACE(item);
        std::string list = repeated(item, 30);
        for (const std::string &script :
             {"INSERT INTO d VALUES(" + list + ")",
              "CREATE DATASET d AS INT(3) FILL VALUES(" + list + ") VALUES(" + list + "); SHOW TYPE d",
              "USE FILE a.h5\nINSERT INTO d(0:1:2:1) VALUES (" + list + ")\nINSERT INTO e values(1)"}) {
            std::string from_text = taken(script), from_parser = parsed(script);
            EXPECT_NE(from_parser, "ERROR") << script.substr(0, 60);
            EXPECT_EQ(from_text, from_parser);
        }
    }
}

TEST(LiteralLists, ListsTheParserMustRead) {
    const std::string values = repeated("1", 80);
    const std::string scripts[] = {
        "INSERT INTO d VALUES(" + repeated("1, abc", 40) + ")",
        "INSERT INTO d VALUES(" + repeated("0x", 80) + ")",
        "INSERT INTO d VALUES(" + values + ",\n2)",
        "INSERT INTO d VALUES(" + values + " 2)",
        "INSERT INTO d VALUES(" + repeated("1", 20) + ")",
        "# a comment\nINSERT INTO d VALUES(" + values + ")",
        "CREATE GROUP \"VALUES(" + values + ")\"",
        "INSERT INTO dVALUES(" + values + ")",
    };
    for (const std::string &script : scripts) {
        SCOPED_TRACE(script.substr(0, 40));
        EXPECT_EQ(taken(script), "NOT TAKEN");
    }
}

using LiteralListRuns = OrmakTest;

TEST_F(LiteralListRuns, ErrorsBehindATakenListKeepTheirColumns) {
    const std::string short_list = "2.5", long_list = repeated("2.5", 100);
    const std::string shapes[][2] = {
        {"INSERT INTO d VALUES(", ") junk"},
        {"CREATE DATASET d AS INT(3) FILL VALUES(", ") VALUES(7) TAG"},
        {"INSERT d VALUES(", ")"},
        {"INSERT INTO d VALUES(", ")\nCRAETE x"},
        {"\"never closed", ""},
    };
    for (const auto &shape : shapes) {
        SCOPED_TRACE(shape[0] + "..." + shape[1]);
        EXPECT_EQ(run(shape[0] + short_list + shape[1]), ORMAK_ERROR_PARSE);
        const std::string short_message = message();
        const int short_line = ormak_error_get_line(), short_position = ormak_error_get_position();
        EXPECT_EQ(run(shape[0] + long_list + shape[1]), ORMAK_ERROR_PARSE);
        EXPECT_EQ(message(), short_message);
        EXPECT_EQ(ormak_error_get_line(), short_line);
        bool behind = short_line == 1 && short_position > (int)shape[0].size() + 1;
        EXPECT_EQ(ormak_error_get_position() - short_position,
                  behind ? (int)(long_list.size() - short_list.size()) : 0);
    }
    // Two lists on the line before the error.
    const std::string two = "CREATE DATASET d AS INT(3) FILL VALUES(%) VALUES(%) junk";
    int positions[2];
    for (int k = 0; k < 2; k++) {
        std::string script = two;
        const std::string &list = k ? long_list : short_list;
        for (size_t at; (at = script.find('%')) != std::string::npos;) script.replace(at, 1, list);
        EXPECT_EQ(run(script), ORMAK_ERROR_PARSE);
        positions[k] = ormak_error_get_position();
    }
    EXPECT_EQ(positions[1] - positions[0], 2 * (int)(long_list.size() - short_list.size()));
}

TEST_F(LiteralListRuns, TakenListsWriteTheirValues) {
    std::string doubles, texts, expected_texts;
    for (int i = 0; i < 200; i++) {
        doubles += (i ? "," : "") + std::to_string(i) + ".5";
        texts += (i ? ", \"" : "\"") + std::string("s") + std::to_string(i) + "\"";
        expected_texts += (i ? "," : "") + std::string("s") + std::to_string(i);
    }
    ASSERT_EQ(run("CREATE TRUNCATE FILE l.h5; USE FILE l.h5; CREATE DATASET x AS DOUBLE(200); "
                  "CREATE DATASET s AS VARCHAR(200) VALUES(" + texts + "); INSERT INTO x VALUES(" + doubles + ")"),
              0)
        << message();
    std::vector<double> values(200);
    ASSERT_EQ(ormak_variable_register(values.data()), 0);
    ASSERT_EQ(run("SELECT FROM x INTO MEMORY 0"), 0);
    for (int i = 0; i < 200; i++) EXPECT_EQ(values[i], i + 0.5);
    ormak_variable_unregister(values.data());
    ASSERT_EQ(run("SELECT FROM s INTO TEXT FILE s.txt"), 0);
    EXPECT_EQ(read_text("s.txt"), expected_texts + "\n");
}
