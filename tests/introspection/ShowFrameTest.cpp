// The list form of the SHOW frame, driven the way the statements over object lists drive
// it: one value for each "[file] name" item.
#include <string>
#include <vector>

#include "OrmakTest.h"
#include "ParseRule.h"
#include "introspection/ShowFrame.h"

namespace {

const ormak::ObjectMessage kMessage("Error when showing path of object \"%s\"");

/* Runs the list form over `list_text` with the value of each item its canonical path, and
   the file in use for it beside it; `post_text` is a post-processing clause or empty. */
int show_paths(const std::string &list_text, const std::string &post_text, std::vector<std::string> &files) {
    int status = ORMAK_ERROR_PARSE;
    with_rule_tree(list_text, ORMAK_RULE(file_object_list), [&](pANTLR3_BASE_TREE list, bool whole) {
        ASSERT_TRUE(list && whole) << list_text;
        auto body = [&](pANTLR3_BASE_TREE post) {
            ormak::ShowFrame frame(post, nullptr, 1);
            status = frame.decode();
            if (status == ORMAK_SUCCESS)
                status = frame.each_object(list, ORMAK_VARCHAR, "out of memory", kMessage,
                                           [&](const ormak::ShowObject &object) {
                                               files.push_back(current_file->file_name);
                                               return frame.add_text(object.path);
                                           });
            status = frame.finish("show_paths", status);
        };
        if (post_text.empty()) {
            body(nullptr);
        } else {
            with_rule_tree(post_text, ORMAK_RULE(post_processing_statement),
                           [&](pANTLR3_BASE_TREE post, bool) { body(post); });
        }
    });
    return status;
}

std::vector<std::string> cursor_texts() {
    std::vector<std::string> values;
    for (int i = 0; i < ormak_cursor_get_count(nullptr); i++) {
        ormak_cursor_absolute(nullptr, i);
        values.push_back(ormak_cursor_get_char(nullptr));
    }
    return values;
}

using Texts = std::vector<std::string>;

} // namespace

class ShowFrameList : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5, b.h5; USE FILE b.h5; CREATE GROUP g; USE FILE a.h5; CREATE GROUP x/y"), 0)
            << message();
    }
    std::vector<std::string> files;
};

TEST_F(ShowFrameList, EachItemInItsOwnFile) {
    ASSERT_EQ(run("USE GROUP x"), 0) << message();
    ASSERT_EQ(show_paths("y, b.h5 /g, ../x/./y", "", files), 0) << message();
    EXPECT_EQ(cursor_texts(), (Texts{"/x/y", "/g", "/x/y"}));
    EXPECT_EQ(files, (Texts{"a.h5", "b.h5", "a.h5"}));
    EXPECT_EQ(_ormak_get_last_data_count(), 3u);
    // The file opened for an item is closed after it.
    EXPECT_EQ(file_use_count, 2);
    EXPECT_STREQ(current_file->file_name, "a.h5");

    files.clear();
    ASSERT_EQ(show_paths("y, b.h5 /g, ../x/./y", "ORDER ASCEND TOP 2", files), 0) << message();
    EXPECT_EQ(cursor_texts(), (Texts{"/g", "/x/y"}));
    EXPECT_EQ(_ormak_get_last_data_count(), 2u);
}

TEST_F(ShowFrameList, AFailingItemEndsTheList) {
    // Directly, what was found before the failure stays in the cursor.
    EXPECT_EQ(show_paths("/g0, b.h5 g/, /g2", "", files), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when showing path of object \"g/\" as it should not end with \"/\"");
    EXPECT_EQ(cursor_texts(), Texts{"/g0"});
    EXPECT_EQ(file_use_count, 2);
    EXPECT_STREQ(current_file->file_name, "a.h5");

    // Through a buffer, the cursor is not touched.
    EXPECT_EQ(show_paths("/h0, missing.h5 /g", "ORDER DESCEND", files), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(cursor_texts(), Texts{"/g0"});

    ASSERT_EQ(run("CLOSE ALL FILE"), 0) << message();
    EXPECT_EQ(show_paths("b.h5 /g, /g", "", files), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(message(), "Error when showing path of object \"/g\" as no file is in use");
    EXPECT_EQ(cursor_texts(), Texts{"/g"});
    EXPECT_EQ(file_use_count, 0);
}
