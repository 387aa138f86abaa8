file(REMOVE_RECURSE
  "libko_static.a"
  "libko_static.pdb"
)

# Per-language clean rules from dependency scanning.
foreach(lang CXX)
  include(CMakeFiles/ko_static.dir/cmake_clean_${lang}.cmake OPTIONAL)
endforeach()
