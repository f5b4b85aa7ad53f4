# Files of src/link
