file(REMOVE_RECURSE
  "CMakeFiles/bench_utm.dir/bench_utm.cpp.o"
  "CMakeFiles/bench_utm.dir/bench_utm.cpp.o.d"
  "bench_utm"
  "bench_utm.pdb"
)

# Per-language clean rules from dependency scanning.
foreach(lang CXX)
  include(CMakeFiles/bench_utm.dir/cmake_clean_${lang}.cmake OPTIONAL)
endforeach()
