# Files of src/files
