# Empty compiler generated dependencies file for bench_utm.
# This may be replaced when dependencies are built.
