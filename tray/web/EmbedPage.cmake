# Writes a source with the bytes of the page's files:
#
#   cmake -DINTO=FILE.cpp -DFILES=a;b -P EmbedPage.cmake
set(arrays "")
set(entries "")
set(number 0)
foreach(file ${FILES})
  get_filename_component(name ${file} NAME)
  file(READ ${file} bytes HEX)
  string(LENGTH "${bytes}" size)
  math(EXPR size "${size} / 2")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
  string(APPEND arrays "constexpr char File${number}[] = {${bytes}'\\0'};\n")
  string(APPEND entries "      {\"${name}\", {File${number}, ${size}}},\n")
  math(EXPR number "${number} + 1")
endforeach()
file(WRITE ${INTO} "#include \"tray/web/PageFiles.h\"\n\nnamespace vex {\nnamespace {\n\n${arrays}\n}  // namespace\n
const std::vector<PageFile>& PageFiles() {\n  static const std::vector<PageFile> files{\n${entries}  };\n  return files;\n}\n
}  // namespace vex\n")
