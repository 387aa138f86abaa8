# Empty dependencies file for ko_objects.
# This may be replaced when dependencies are built.
