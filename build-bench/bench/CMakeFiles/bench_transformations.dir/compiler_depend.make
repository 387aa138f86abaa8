# Empty compiler generated dependencies file for bench_transformations.
# This may be replaced when dependencies are built.
