# Files of src/options
