# Turns files into the C++ source that PageFiles.h declares: cmake -DOUTPUT=source.cpp -DFILES=a;b -P Embed.cmake
set(source "#include \"report/PageFiles.h\"\n\nnamespace kpifc::page {\n\n")
set(rows "")
foreach(file IN LISTS FILES)
    get_filename_component(name "${file}" NAME)
    string(MAKE_C_IDENTIFIER "${name}" array)
    file(READ "${file}" bytes HEX)
    string(REGEX REPLACE "(................................)" "\\1\n" bytes "${bytes}")
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
    string(APPEND source "static const unsigned char ${array}[] = {\n${bytes}\n};\n")
    string(APPEND rows "        {\"${name}\", {reinterpret_cast<const char*>(${array}), sizeof ${array}}},\n")
endforeach()
string(APPEND source "\nconst std::map<std::string_view, std::string_view>& pageFiles() {\n"
       "    static const std::map<std::string_view, std::string_view> files{\n${rows}    };\n    return files;\n}\n\n"
       "} // namespace kpifc::page\n")
file(WRITE "${OUTPUT}" "${source}")
