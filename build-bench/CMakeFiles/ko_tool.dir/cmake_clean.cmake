file(REMOVE_RECURSE
  "CMakeFiles/ko_tool.dir/tools/ko/main.cpp.o"
  "CMakeFiles/ko_tool.dir/tools/ko/main.cpp.o.d"
  "ko"
  "ko.pdb"
)

# Per-language clean rules from dependency scanning.
foreach(lang CXX)
  include(CMakeFiles/ko_tool.dir/cmake_clean_${lang}.cmake OPTIONAL)
endforeach()
