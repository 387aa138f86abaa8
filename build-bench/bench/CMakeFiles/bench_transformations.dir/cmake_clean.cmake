file(REMOVE_RECURSE
  "CMakeFiles/bench_transformations.dir/bench_transformations.cpp.o"
  "CMakeFiles/bench_transformations.dir/bench_transformations.cpp.o.d"
  "bench_transformations"
  "bench_transformations.pdb"
)

# Per-language clean rules from dependency scanning.
foreach(lang CXX)
  include(CMakeFiles/bench_transformations.dir/cmake_clean_${lang}.cmake OPTIONAL)
endforeach()
