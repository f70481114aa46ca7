// Shared ground of the tests: each test runs in a fresh directory of its own, with no
// file in use and debug off.
#ifndef ORMAK_TEST_H
#define ORMAK_TEST_H

#include <gtest/gtest.h>
#include <hdf5.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>

#include "Ormak.h"

class OrmakTest : public ::testing::Test {
protected:
    void SetUp() override {
        char buffer[4096];
        ASSERT_NE(getcwd(buffer, sizeof buffer), nullptr);
        original_directory = buffer;
        char pattern[] = "/tmp/ormak-test-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        directory = pattern;
        ASSERT_EQ(chdir(directory.c_str()), 0);
        ormak_variable_unregister_all();
    }

    void TearDown() override {
        // Settings outlive scripts: put the built-in ones back for the next test.
        ormak_execute("SET DEBUG DISABLE; CLOSE ALL FILE");
        ormak_execute("SET CACHE SLOTS DEFAULT SIZE DEFAULT PREEMPTION DEFAULT; SET DATASET CACHE SLOTS FILE SIZE FILE "
                      "PREEMPTION FILE; SET LIBRARY BOUNDS FROM EARLIEST; SET ATOMIC DISABLE; "
                      "SET EXTERNAL LINK PREFIX; SET FLUSH DISABLE");
        ormak_execute(nullptr);
        ormak_variable_unregister_all();
        ASSERT_EQ(chdir(original_directory.c_str()), 0);
        std::string command = "rm -rf " + directory;
        ASSERT_EQ(system(command.c_str()), 0);
    }

    /* Runs a script and returns its status. */
    static int run(const std::string &script) { return ormak_execute(script.c_str()); }

    /* Runs a script that is to fail; returns its status, with its message in `said`. */
    int refuse(const std::string &script) {
        int status = run(script);
        said = message();
        return status;
    }

    static std::string message() {
        const char *text = ormak_error_get_message();
        return text ? text : "";
    }

    static bool exists(const std::string &path) {
        struct stat info;
        return stat(path.c_str(), &info) == 0;
    }

    static bool is_directory(const std::string &path) {
        struct stat info;
        return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
    }

    static void write_text(const std::string &path, const std::string &text) {
        std::ofstream(path, std::ios::binary) << text;
    }

    static std::string read_text(const std::string &path) {
        std::ifstream in(path, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }

    static bool is_hdf5(const std::string &path) { return H5Fis_hdf5(path.c_str()) > 0; }

    std::string said;
    std::string original_directory;
    std::string directory;
};

#endif
