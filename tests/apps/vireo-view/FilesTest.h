#pragma once

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace vireo_view {

// A test with files of its own.
class FilesTest : public testing::Test
{
protected:
    std::filesystem::path directory() const { return m_Directory.path().toStdString(); }

    std::filesystem::path write(const std::string& name, std::string_view contents) const
    {
        const std::filesystem::path file = directory() / name;
        std::ofstream(file, std::ios::binary) << contents;
        return file;
    }

    // What was thrown, without the directory's name; empty if nothing was.
    template <typename Error, typename Code>
    std::string messageOf(Code&& code) const
    {
        try {
            code();
        } catch (const Error& error) {
            const std::string text = error.what();
            const std::string prefix = directory().string() + "/";
            return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
        }
        return {};
    }

private:
    QTemporaryDir m_Directory;
};

} // namespace vireo_view
