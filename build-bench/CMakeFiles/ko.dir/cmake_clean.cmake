file(REMOVE_RECURSE
  "libko.pdb"
  "libko.so"
  "libko.so.0"
  "libko.so.0.1.0"
)

# Per-language clean rules from dependency scanning.
foreach(lang CXX)
  include(CMakeFiles/ko.dir/cmake_clean_${lang}.cmake OPTIONAL)
endforeach()
